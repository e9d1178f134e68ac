// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PLedgerText.h>

#include <QStringList>

namespace {

bool isLoss(PFrameOutcome outcome) {
    return outcome != PFrameOutcome::Delivered && outcome != PFrameOutcome::NotRequested;
}

} // namespace

quint64 PLedgerText::lost(const PFrameLedger& ledger) {
    quint64 sum = 0;
    for (PFrameOutcome outcome : PFrameLedger::allOutcomes())
        sum += isLoss(outcome) ? ledger.count(outcome) : 0;
    return sum;
}

QString PLedgerText::brief(const PFrameLedger& ledger) {
    return tr("Frames: %1, lost: %2")
        .arg(QString::number(ledger.produced), QString::number(lost(ledger)));
}

QString PLedgerText::summary(const PFrameLedger& ledger) {
    const quint64 lostFrames = lost(ledger);
    if (lostFrames == 0)
        return tr("Frames: %1, none lost").arg(ledger.produced);
    QStringList places;
    for (PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        if (isLoss(outcome) && ledger.count(outcome) > 0)
            places.append(u"%1: %2"_qs.arg(where(outcome), QString::number(ledger.count(outcome))));
    }
    return tr("Frames: %1, lost: %2 (%3)")
        .arg(QString::number(ledger.produced), QString::number(lostFrames), places.join(u", "_qs));
}

QList<std::pair<QString, quint64>> PLedgerText::rows(const PFrameLedger& ledger, quint64 pictures) {
    QList<std::pair<QString, quint64>> rows{{tr("Frames from the camera"), ledger.produced}};
    for (PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        const quint64 count = ledger.count(outcome);
        if (outcome == PFrameOutcome::Delivered)
            rows.append({tr("Arrived"), count});
        else if (count > 0 && outcome == PFrameOutcome::LostInCamera)
            rows.append({tr("Lost: %1").arg(where(outcome)), count});
        else if (count > 0 && isLoss(outcome))
            rows.append({tr("Dropped: %1").arg(where(outcome)), count});
        else if (count > 0)
            rows.append({tr("Arrived after the last requested frame"), count});
    }
    rows.append({tr("In transit"), ledger.waiting});
    rows.append({tr("Pictures taken"), pictures});
    return rows;
}

QString PLedgerText::where(PFrameOutcome outcome) {
    switch (outcome) {
    case PFrameOutcome::LostInCamera:
        return tr("in the camera or on the cable");
    case PFrameOutcome::BadDepth:
        return tr("unknown pixel format");
    case PFrameOutcome::BadSize:
        return tr("wrong size");
    case PFrameOutcome::NoMemory:
        return tr("out of memory");
    case PFrameOutcome::DroppedWaiting:
        return tr("program too slow");
    case PFrameOutcome::FailedInWriter:
        return tr("disk too slow or full");
    case PFrameOutcome::Failed:
        return tr("program error");
    case PFrameOutcome::Delivered:
    case PFrameOutcome::NotRequested:
        break;
    }
    return PFrameLedger::title(outcome);
}
