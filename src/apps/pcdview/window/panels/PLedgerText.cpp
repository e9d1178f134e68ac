// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PLedgerText.h>

#include <QStringList>

namespace {

bool isLoss(PFrameFate fate) {
    return fate != PFrameFate::Delivered && fate != PFrameFate::NotWanted;
}

} // namespace

quint64 PLedgerText::lost(const PFrameLedger& ledger) {
    quint64 sum = 0;
    for (PFrameFate fate : PFrameLedger::allFates())
        sum += isLoss(fate) ? ledger.count(fate) : 0;
    return sum;
}

QString PLedgerText::brief(const PFrameLedger& ledger) {
    return tr("Frames: %1, lost: %2").arg(ledger.produced).arg(lost(ledger));
}

QString PLedgerText::summary(const PFrameLedger& ledger) {
    const quint64 lostFrames = lost(ledger);
    if (lostFrames == 0)
        return tr("Frames: %1, none lost on the way").arg(ledger.produced);
    QStringList places;
    for (PFrameFate fate : PFrameLedger::allFates()) {
        if (isLoss(fate) && ledger.count(fate) > 0)
            places.append(u"%1 %2"_qs.arg(ledger.count(fate)).arg(where(fate)));
    }
    return tr("Frames: %1, lost: %2 (%3)")
        .arg(ledger.produced)
        .arg(lostFrames)
        .arg(places.join(u", "_qs));
}

QList<std::pair<QString, quint64>> PLedgerText::rows(const PFrameLedger& ledger, quint64 pictures) {
    QList<std::pair<QString, quint64>> rows{{tr("Frames from the camera"), ledger.produced}};
    for (PFrameFate fate : PFrameLedger::allFates()) {
        const quint64 count = ledger.count(fate);
        if (fate == PFrameFate::Delivered)
            rows.append({tr("Arrived"), count});
        else if (count > 0 && isLoss(fate))
            rows.append({tr("Lost: %1").arg(where(fate)), count});
        else if (count > 0)
            rows.append({tr("Came after the last one wanted"), count});
    }
    rows.append({tr("On their way"), ledger.waiting});
    rows.append({tr("Still pictures"), pictures});
    return rows;
}

QString PLedgerText::where(PFrameFate fate) {
    switch (fate) {
    case PFrameFate::LostInCamera:
        return tr("in the camera or on the cable");
    case PFrameFate::BadDepth:
        return tr("of an unknown pixel format");
    case PFrameFate::BadSize:
        return tr("of a wrong size");
    case PFrameFate::NoMemory:
        return tr("for want of memory");
    case PFrameFate::DroppedWaiting:
        return tr("as the program was too slow");
    case PFrameFate::FailedInWriter:
        return tr("as the disk was too slow or full");
    case PFrameFate::Failed:
        return tr("by a fault of the program");
    case PFrameFate::Delivered:
    case PFrameFate::NotWanted:
        break;
    }
    return PFrameLedger::title(fate);
}
