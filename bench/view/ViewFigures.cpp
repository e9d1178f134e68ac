// SPDX-License-Identifier: MIT
#include <view/ViewFigures.h>

#include <QStringList>

namespace {

QStringList findProblems(const PhaseFigures& phase) {
    QStringList problems;
    if (phase.late.count() == 0)
        problems.append(u"nothing was measured"_qs);
    if (!phase.hasCamera)
        return problems;
    if (phase.shown == 0 || phase.delivered == 0)
        problems.append(u"no frame was shown"_qs);
    if (phase.events.paints.count() == 0)
        problems.append(u"the picture was not painted"_qs);
    if (phase.events.histogramPaints.count() == 0)
        problems.append(u"the histogram was not painted"_qs);
    return problems;
}

QStringList findProblems(const RecordingFigures& recording) {
    if (recording.bytes < recording.frameBytes)
        return {u"not one frame was recorded: "_qs + recording.outcome};
    if (recording.plainSeconds <= 0)
        return {u"the plain write failed"_qs};
    return {};
}

QStringList findProblems(const SessionLedger& session) {
    if (session.ledger.produced == 0)
        return {u"the camera made no frame"_qs};
    if (session.ledger.waiting > 0)
        return {u"frames still wait"_qs};
    return session.ledger.isBalanced()
               ? QStringList()
               : QStringList{u"the account of the frames does not balance"_qs};
}

template <typename Figures>
void append(QStringList& problems, const QList<Figures>& parts) {
    for (const Figures& part : parts) {
        for (const QString& problem : findProblems(part))
            problems.append(part.name + u": "_qs + problem);
    }
}

} // namespace

QStringList ViewFigures::problems() const {
    QStringList problems;
    append(problems, phases);
    append(problems, recordings);
    append(problems, ledgers);
    if (smallPaints.count() == 0 || largePaints.count() == 0)
        problems.append(u"painting was not measured"_qs);
    return problems;
}
