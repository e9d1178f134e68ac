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
            ? tr("All settings of the profile are in force: %1.").arg(report.applied.size())
            : tr("Settings in force: %1, not taken: %2.")
                  .arg(report.applied.size())
                  .arg(report.refused.size()));
    if (!report.note.isEmpty())
        html += u"<p>%1</p>"_qs.arg(report.note.toHtmlEscaped());
    html += section(tr("Not taken by the camera:"), report.refused);
    html += section(tr("Not meant to be set:"), report.ignored);
    if (!report.missing.isEmpty())
        html += u"<p>%1</p>"_qs.arg(
            tr("Not in the file, so left as they are: %1").arg(names(report.missing)));
    return html;
}
