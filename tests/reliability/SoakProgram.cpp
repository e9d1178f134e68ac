// SPDX-License-Identifier: MIT
// Uses a simulated camera for very long and samples what the process holds meanwhile; exits with 1
// if anything grows or does not balance. Started by scripts/soak.
#include <reliability/GrowthWatch.h>
#include <reliability/QuietLog.h>
#include <reliability/SoakCamera.h>
#include <reliability/Watchdog.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>

#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <malloc.h>

namespace {

constexpr int repetitionsATurn = 20;
constexpr quint64 framesATurn = 4000;
constexpr int turnsPerLeak = 2;
constexpr std::chrono::seconds longestTurn(120);
constexpr qint64 msBetweenRows = 5000;
constexpr std::size_t leakedBytes = 256 * 1024;

struct Wanted {
    qint64 milliseconds = 0;
    qint64 replugs = 0;
    qint64 starts = 0;
    quint64 frames = 0;

    bool isReached(qint64 elapsed, const SoakCamera::Counts& counts) const {
        return elapsed >= milliseconds && counts.replugs >= replugs && counts.starts >= starts &&
               counts.frames >= frames;
    }
};

/// Holds something more, to see that this is noticed.
void leak(const QString& what) {
    static std::vector<std::unique_ptr<std::vector<char>>> memory;
    if (what == u"memory"_qs)
        memory.push_back(std::make_unique<std::vector<char>>(leakedBytes, 'x'));
    else if (what == u"descriptor"_qs)
        ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    else if (what == u"thread"_qs)
        std::thread([] { std::this_thread::sleep_for(std::chrono::hours(1)); }).detach();
    else if (what == u"frame"_qs)
        SoakCamera::miscount();
}

void printHead() {
    std::printf("%8s %9s %9s %11s %11s %11s %8s %6s %10s %10s\n", "seconds", "replugs", "starts",
                "frames", "delivered", "dropped", "threads", "files", "heap KiB", "RSS KiB");
}

void printRow(qint64 elapsed, const SoakCamera::Counts& counts, const ProcessState& state) {
    const quint64 delivered = counts.ledger.count(PFrameOutcome::Delivered);
    const quint64 dropped = counts.ledger.count(PFrameOutcome::DroppedWaiting);
    std::printf("%8.1f %9lld %9lld %11llu %11llu %11llu %8lld %6lld %10lld %10lld\n",
                double(elapsed) / 1000, counts.replugs, counts.starts, counts.frames, delivered,
                dropped, state.threads, state.descriptors, state.heapBytes / 1024,
                state.residentBytes / 1024);
    std::fflush(stdout);
}

/// Turn after turn until everything wanted is reached; what went wrong, in words.
QStringList soak(const Wanted& wanted, const QString& leaked) {
    Watchdog watchdog(longestTurn);
    GrowthWatch::Bounds bounds;
    bounds.isResidentJudged = !ProcessState::isSanitized();
    GrowthWatch growth(bounds);
    SoakCamera camera;
    const QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    qint64 nextRow = 0;
    printHead();
    for (int turn = 0; camera.complaints().isEmpty(); ++turn) {
        watchdog.watch("turn " + std::to_string(turn) + " of the soak");
        camera.replug(repetitionsATurn);
        camera.startAndStop(repetitionsATurn);
        camera.takeFrames(framesATurn);
        if (turn % turnsPerLeak == 0)
            leak(leaked);
        camera.replug(1); // closes the ledger of the frames
        camera.settle();
        const ProcessState state = ProcessState::now();
        growth.add(camera.counts().replugs, state);
        const bool isDone = growth.samples() >= GrowthWatch::fewestSamples &&
                            wanted.isReached(clock.elapsed(), camera.counts());
        if (isDone || clock.elapsed() >= nextRow) {
            printRow(clock.elapsed(), camera.counts(), state);
            nextRow = clock.elapsed() + msBetweenRows;
        }
        if (isDone)
            break;
    }
    return camera.complaints() + growth.complaints();
}

} // namespace

int main(int argc, char** argv) {
    // Each of several arenas keeps a little of what the threads that used it have freed.
    mallopt(M_ARENA_MAX, 1);
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption seconds(u"seconds"_qs, u"Run for at least this time."_qs, u"S"_qs,
                                     qEnvironmentVariable("PCD_SOAK_SECONDS", u"0"_qs));
    const QCommandLineOption cycles(u"cycles"_qs, u"The fewest cycles of each kind."_qs, u"N"_qs,
                                    u"0"_qs);
    const QCommandLineOption frames(u"frames"_qs, u"The fewest frames."_qs, u"N"_qs, u"0"_qs);
    const QCommandLineOption leaked(
        u"leak"_qs, u"Leak this on purpose: memory, descriptor, thread or frame."_qs, u"KIND"_qs);
    parser.addOptions({seconds, cycles, frames, leaked});
    parser.addHelpOption();
    parser.process(application);
    PLog::installQtMessageHandler();
    const QuietLog quiet;
    const qint64 cyclesWanted = parser.value(cycles).toLongLong();
    const QStringList complaints = soak({parser.value(seconds).toLongLong() * 1000, cyclesWanted,
                                         cyclesWanted, parser.value(frames).toULongLong()},
                                        parser.value(leaked));
    for (const QString& complaint : complaints)
        std::printf("GROWS OR FAILS: %s\n", qUtf8Printable(complaint));
    std::printf("%s\n", complaints.isEmpty() ? "Soaked: all flat, all balanced." : "Failed.");
    return complaints.isEmpty() ? 0 : 1;
}
