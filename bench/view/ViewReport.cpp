// SPDX-License-Identifier: MIT
#include <view/ViewReport.h>

#include <QMetaEnum>

#include <cstdio>

namespace {

constexpr double framePeriodMs = 1000.0 / 30;

QByteArray typeName(int type) {
    const char* const name = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
    return name == nullptr ? QByteArray::number(type) : QByteArray(name);
}

/// 0 where there is nothing to compare with.
double ratio(double value, double limit) {
    return limit > 0 ? value / limit : 0;
}

double megabytes(qint64 bytes) {
    return double(bytes) / 1e6;
}

void printRecording(const RecordingFigures& recording) {
    const double rate = ratio(megabytes(recording.bytes), recording.seconds);
    const double pace = recording.pace * megabytes(recording.frameBytes);
    const double plain = ratio(megabytes(recording.bytes), recording.plainSeconds);
    std::printf("%-34s %4d %6lld %8.0f %6.1f %7.0f %9.0f %9.0f %9.2f %9.2f\n",
                recording.name.toUtf8().constData(), recording.wanted,
                static_cast<long long>(recording.bytes / recording.frameBytes),
                megabytes(recording.bytes), recording.seconds, rate, pace, plain, ratio(rate, pace),
                ratio(rate, plain));
    std::printf("    %s\n", recording.outcome.toUtf8().constData());
}

void printLedger(const SessionLedger& session) {
    std::printf("%-34s %8llu produced", session.name.toUtf8().constData(),
                static_cast<unsigned long long>(session.ledger.produced));
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        if (const quint64 count = session.ledger.count(outcome))
            std::printf(", %llu %s", static_cast<unsigned long long>(count),
                        PFrameLedger::title(outcome).toUtf8().constData());
    }
    std::printf(", %s\n", session.ledger.isBalanced() ? "balanced" : "NOT BALANCED");
}

} // namespace

void ViewReport::print(const ViewFigures& figures) {
    printStalls(figures);
    printThread(figures);
    printShown(figures);
    printPainting(figures);
    printRecordings(figures);
    printLedgers(figures);
}

void ViewReport::printStalls(const ViewFigures& figures) {
    std::printf("\nHow late the main thread gets to an event, in milliseconds\n"
                "%-34s %7s %7s %7s %9s %9s\n",
                "", "median", "99 %", "longest", "/period", "/idle");
    const double idle = figures.phases.isEmpty() ? 0 : figures.phases.first().late.longest();
    for (const PhaseFigures& phase : figures.phases) {
        std::printf("%-34s %7.2f %7.2f %7.2f %9.2f %9.1f\n", phase.name.toUtf8().constData(),
                    phase.late.median(), phase.late.atShare(0.99), phase.late.longest(),
                    ratio(phase.late.longest(), framePeriodMs), ratio(phase.late.longest(), idle));
    }
}

void ViewReport::printThread(const ViewFigures& figures) {
    std::printf("\nThe main thread: its share of a core, the share of the time it waited for one,\n"
                "and the event that took it longest, in milliseconds\n");
    for (const PhaseFigures& phase : figures.phases) {
        std::printf("%-34s %5.1f %% %5.1f %% %7.2f  %s to %s\n", phase.name.toUtf8().constData(),
                    100 * ratio(phase.core.used, phase.seconds),
                    100 * ratio(phase.core.waited, phase.seconds), phase.events.longest,
                    typeName(phase.events.type).constData(), phase.events.receiver);
    }
}

void ViewReport::printShown(const ViewFigures& figures) {
    std::printf("\nFrames a second, of %.0f that the camera makes\n%-34s %9s %9s %9s\n",
                1000 / framePeriodMs, "", "delivered", "shown", "painted");
    for (const PhaseFigures& phase : figures.phases) {
        if (!phase.hasCamera)
            continue;
        std::printf("%-34s %9.1f %9.1f %9.1f\n", phase.name.toUtf8().constData(),
                    ratio(double(phase.delivered), phase.seconds),
                    ratio(double(phase.shown), phase.seconds),
                    ratio(double(phase.events.paints.count()), phase.seconds));
    }
}

void ViewReport::printPainting(const ViewFigures& figures) {
    const double small = figures.smallPaints.median();
    const double large = figures.largePaints.median();
    std::printf("\nPainting the whole picture into the same window, median in milliseconds\n"
                "1 megapixel %.2f, 20 megapixels %.2f: %.2f times as long\n",
                small, large, ratio(large, small));
}

void ViewReport::printRecordings(const ViewFigures& figures) {
    std::printf("\nRecording to OME-TIFF while the picture is live, in millions of bytes a second\n"
                "%-34s %4s %6s %8s %6s %7s %9s %9s %9s %9s\n",
                "", "want", "frames", "MB", "s", "MB/s", "camera", "plain", "/camera", "/plain");
    for (const RecordingFigures& recording : figures.recordings)
        printRecording(recording);
}

void ViewReport::printLedgers(const ViewFigures& figures) {
    std::printf("\nWhat became of the frames\n");
    for (const SessionLedger& session : figures.ledgers)
        printLedger(session);
}
