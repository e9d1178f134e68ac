// SPDX-License-Identifier: MIT
#include <apps/pcdctl/runs/PPipeReport.h>

#include <apps/pcdctl/cli/PCtlOutput.h>

#include <PCore/PPrintableText.h>

QJsonObject PPipeReport::toJson() const {
    const POutletTally& tally = output.tally;
    QJsonObject object = stream.toJson();
    object.insert(u"to"_qs, target);
    object.insert(u"passed_on"_qs, QJsonObject{{u"arrived"_qs, qint64(tally.arrived)},
                                               {u"written"_qs, qint64(tally.written)},
                                               {u"dropped"_qs, qint64(tally.dropped)},
                                               {u"unwritten"_qs, qint64(tally.unwritten)},
                                               {u"after_end"_qs, qint64(tally.afterEnd)},
                                               {u"bytes"_qs, qint64(output.bytes)},
                                               {u"reader_closed"_qs, output.isReaderGone},
                                               {u"balanced"_qs, tally.isBalanced()}});
    return object;
}

QString PPipeReport::toText() const {
    const POutletTally& tally = output.tally;
    QString text = u"Passed on: %1 to %2\n"_qs.arg(PCtlOutput::toFrames(tally.written),
                                                   PPrintableText::toLine(target));
    const auto add = [&](quint64 count, const QString& what) {
        if (count > 0)
            text += u"  %1  %2\n"_qs.arg(QString::number(count).rightJustified(10), what);
    };
    add(tally.dropped, u"dropped: the camera was faster than the reader or the conversion"_qs);
    add(tally.unwritten, u"not written, or not whole, when the stream ended"_qs);
    add(tally.afterEnd, u"arrived after the last one"_qs);
    if (output.isReaderGone)
        text += u"  the reader closed the pipe\n"_qs;
    return stream.toText() + u'\n' + text.trimmed();
}
