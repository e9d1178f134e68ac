// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PStreamReport.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <PCore/PPrintableText.h>

namespace {

QJsonObject ledgerToJson(const PFrameLedger& ledger) {
    QJsonObject object{{u"produced"_qs, qint64(ledger.produced)},
                       {u"waiting"_qs, qint64(ledger.waiting)},
                       {u"snapshots"_qs, qint64(ledger.snapshots)},
                       {u"balanced"_qs, ledger.isBalanced()}};
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes())
        object.insert(QString::fromLatin1(PFrameLedger::key(outcome)),
                      qint64(ledger.count(outcome)));
    return object;
}

QString ledgerRow(const QString& title, quint64 count) {
    return u"  %1  %2\n"_qs.arg(QString::number(count).rightJustified(10), title);
}

QString ledgerToText(const PFrameLedger& ledger) {
    QString text = u"Frames:\n"_qs + ledgerRow(u"produced"_qs, ledger.produced);
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        if (ledger.count(outcome) > 0)
            text += ledgerRow(PFrameLedger::title(outcome), ledger.count(outcome));
    }
    if (ledger.waiting > 0)
        text += ledgerRow(u"in transit"_qs, ledger.waiting);
    return text + (ledger.isBalanced() ? u"  balanced"_qs : u"  NOT balanced"_qs);
}

} // namespace

QJsonObject PStreamReport::toJson() const {
    QJsonObject object{{u"camera"_qs, camera.id},
                       {u"simulated"_qs, camera.simulated},
                       {u"frames"_qs, qint64(tally.frames())},
                       {u"seconds"_qs, tally.seconds()},
                       {u"fps"_qs, tally.fps()},
                       {u"megabytesPerSecond"_qs, tally.megabytesPerSecond()},
                       {u"mode"_qs, PCtlOutput::toValue(mode.name)},
                       {u"ledger"_qs, ledgerToJson(ledger)}};
    if (saved)
        object.insert(u"saved"_qs, qint64(*saved));
    if (!error.isEmpty())
        object.insert(u"error"_qs, error);
    return object;
}

QString PStreamReport::toText() const {
    QString text = u"%1%2%3: %4 in %5 s, %6 fps, %7 MB/s\n"_qs.arg(
        PPrintableText::toLine(camera.id), camera.simulated ? u" (simulated)"_qs : QString(),
        mode.name.isEmpty() ? QString() : u", mode "_qs + PPrintableText::toLine(mode.name),
        PCtlOutput::toFrames(tally.frames()), QString::number(tally.seconds(), 'f', 2),
        QString::number(tally.fps(), 'f', 1), QString::number(tally.megabytesPerSecond(), 'f', 1));
    if (saved)
        text += u"Saved: %1\n"_qs.arg(PCtlOutput::toFrames(*saved));
    return text + ledgerToText(ledger);
}
