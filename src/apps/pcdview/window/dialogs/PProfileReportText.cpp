// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PProfileReportText.h>

#include <QStringList>

namespace {

using Title = PProfileReportText::Title;

QString escapedTitle(const QByteArray& id, const Title& title) {
    return (title ? title(id) : QString::fromLatin1(id)).toHtmlEscaped();
}

QString section(const QString& heading, const QList<PDeviceProfileReport::Item>& items,
                const Title& title) {
    if (items.isEmpty())
        return QString();
    QString lines;
    for (const PDeviceProfileReport::Item& item : items) {
        lines += u"<li><b>%1</b>: %2</li>"_qs.arg(escapedTitle(item.id, title),
                                                  item.reason.toHtmlEscaped());
    }
    return u"<p>%1</p><ul>%2</ul>"_qs.arg(heading, lines);
}

QString titles(const QList<QByteArray>& ids, const Title& title) {
    QStringList texts;
    for (const QByteArray& id : ids)
        texts.append(escapedTitle(id, title));
    return texts.join(u", "_qs);
}

} // namespace

QString PProfileReportText::html(const PDeviceProfileReport& report, const Title& title) {
    QString html = u"<p>%1</p>"_qs.arg(
        report.isComplete()
            ? tr("All settings of the profile applied: %1.").arg(report.applied.size())
            : tr("Settings applied: %1, refused: %2.")
                  .arg(QString::number(report.applied.size()),
                       QString::number(report.refused.size())));
    if (!report.note.isEmpty())
        html += u"<p>%1</p>"_qs.arg(report.note.toHtmlEscaped());
    html += section(tr("Refused:"), report.refused, title);
    html += section(tr("Skipped:"), report.ignored, title);
    if (!report.missing.isEmpty())
        html += u"<p>%1</p>"_qs.arg(
            tr("Not in the file and left unchanged: %1").arg(titles(report.missing, title)));
    return html;
}
