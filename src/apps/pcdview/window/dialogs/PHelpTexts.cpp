// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PHelpTexts.h>

#include <apps/common/camera/PCameraSdk.h>

#include <QAction>

namespace {

QString row(const QString& left, const QString& right) {
    return u"<tr><td style=\"padding-right: 24px\"><b>%1</b></td><td>%2</td></tr>"_qs.arg(
        left.toHtmlEscaped(), right.toHtmlEscaped());
}

QString table(const QString& rows) {
    return u"<table cellpadding=\"3\">%1</table>"_qs.arg(rows);
}

QString toPlainName(const QAction& action) {
    return QString(action.text()).remove(u'&').remove(u'…');
}

} // namespace

QString PHelpTexts::keysAndMouse(const QList<QAction*>& actions) {
    QString keys;
    for (const QAction* action : actions)
        keys += row(action->shortcut().toString(QKeySequence::NativeText), toPlainName(*action));
    const QString mouse = row(tr("Wheel"), tr("Zoom at the cursor")) +
                          row(tr("Drag"), tr("Move the picture or draw a region")) +
                          row(tr("Double click"), tr("Full screen")) +
                          row(tr("Escape"), tr("Leave full screen or cancel drawing a region"));
    return u"<h3>%1</h3>%2<h3>%3</h3>%4"_qs.arg(tr("Mouse"), table(mouse), tr("Keys"), table(keys));
}

QString PHelpTexts::about(const PCameraSdk& sdk) {
    const QString library = sdk.path().isEmpty() ? tr("none") : sdk.path();
    QString rows = row(tr("Program"), u"pcdview "_qs + QCoreApplication::applicationVersion()) +
                   row(u"Qt"_qs, QString::fromLatin1(qVersion())) +
                   row(tr("Camera library"), library);
    if (!sdk.version().isEmpty())
        rows += row(tr("Library version"), sdk.version());
    if (sdk.isSimulated())
        rows += row(tr("Cameras"), tr("simulated"));
    return u"<h3>pcdview</h3><p>%1</p>%2"_qs.arg(
        tr("Live pictures, stills and recordings from microscope cameras."), table(rows));
}
