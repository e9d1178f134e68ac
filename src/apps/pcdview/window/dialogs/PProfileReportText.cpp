// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PProfileReportText.h>

#include <QStringList>

namespace {

QString section(const QString& title, const QList<PDeviceProfileReport::Item>& items) {
    if (items.isEmpty())
        return QString();
    QString lines;
    for (const PDeviceProfileReport::Item& item : items) {
        lines += u"<li><b>%1</b>: %2</li>"_qs.arg(QString::fromLatin1(item.id).toHtmlEscaped(),
                                                  item.reason.toHtmlEscaped());
    }
    return u"<p>%1</p><ul>%2</ul>"_qs.arg(title, lines);
}

QString names(const QList<QByteArray>& ids) {
    QStringList texts;
    for (const QByteArray& id : ids)
        texts.append(QString::fromLatin1(id).toHtmlEscaped());
    return texts.join(u", "_qs);
}

} // namespace

QString PProfileReportText::html(const PDeviceProfileReport& report) {
    QString html = u"<p>%1</p>"_qs.arg(
        report.isComplete()
            ? tr("All settings of the profile applied: %1.").arg(report.applied.size())
            : tr("Settings applied: %1, refused: %2.")
                  .arg(QString::number(report.applied.size()),
                       QString::number(report.refused.size())));
    if (!report.note.isEmpty())
        html += u"<p>%1</p>"_qs.arg(report.note.toHtmlEscaped());
    html += section(tr("Refused:"), report.refused);
    html += section(tr("Skipped:"), report.ignored);
    if (!report.missing.isEmpty())
        html += u"<p>%1</p>"_qs.arg(
            tr("Not in the file and left unchanged: %1").arg(names(report.missing)));
    return html;
}
