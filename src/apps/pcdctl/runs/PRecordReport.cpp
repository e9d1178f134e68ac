// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PRecordReport.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <PCore/PPrintableText.h>

QJsonObject PRecordReport::toJson() const {
    QJsonObject object = stream.toJson();
    object.insert(u"file"_qs, file);
    object.insert(u"recording"_qs, QJsonObject{{u"wanted"_qs, qint64(tally.wanted)},
                                               {u"written"_qs, qint64(tally.written)},
                                               {u"failed"_qs, qint64(tally.failed)},
                                               {u"refused"_qs, qint64(tally.refused)},
                                               {u"not_taken"_qs, qint64(tally.notTaken)},
                                               {u"not_due"_qs, qint64(tally.notDue)},
                                               {u"after_end"_qs, qint64(tally.afterEnd)},
                                               {u"balanced"_qs, tally.isBalanced()}});
    return object;
}

QString PRecordReport::toText() const {
    QString text = u"Recorded: %1 of %2 in %3\n"_qs.arg(QString::number(tally.written),
                                                        PCtlOutput::toFrames(tally.wanted),
                                                        PPrintableText::toLine(file));
    const auto add = [&](quint64 count, const QString& what) {
        if (count > 0)
            text += u"  %1  %2\n"_qs.arg(QString::number(count).rightJustified(10), what);
    };
    add(tally.failed, u"could not be written"_qs);
    add(tally.refused, u"arrived faster than the disk could write"_qs);
    add(tally.notTaken, u"did not arrive"_qs);
    add(tally.notDue, u"arrived between the times of the time-lapse"_qs);
    add(tally.afterEnd, u"arrived after the last one"_qs);
    return stream.toText() + u'\n' + text.trimmed();
}
