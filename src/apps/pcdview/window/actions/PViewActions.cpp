// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PViewActions.h>

#include <apps/pcdview/icons/PActionIcon.h>

#include <QAction>
#include <QMainWindow>

#include <utility>

PViewActions::PViewActions(QMainWindow* window)
    : QObject(window)
    , m_window(window) {
    makeFileActions();
    makeCameraActions();
    makeViewActions();
    makeHelpActions();
    setIcons();
}

QAction* PViewActions::add(const char* name, const QString& text, const QString& shortText,
                           const QKeySequence& key, const QString& explanation) {
    auto* const action = new QAction(text, this);
    action->setObjectName(QString::fromLatin1(name));
    action->setIconText(shortText);
    action->setShortcut(key);
    const QString keyText = key.toString(QKeySequence::NativeText);
    action->setToolTip(keyText.isEmpty() ? explanation : u"%1 (%2)"_qs.arg(explanation, keyText));
    action->setWhatsThis(action->toolTip());
    // Added to the window itself: a hidden menu bar disables the shortcuts of its actions.
    m_window->addAction(action);
    return action;
}

QAction* PViewActions::addSwitch(const char* name, const QString& text, const QString& shortText,
                                 const QKeySequence& key, const QString& explanation) {
    QAction* const action = add(name, text, shortText, key, explanation);
    action->setCheckable(true);
    action->setIconVisibleInMenu(false); // but its check box
    return action;
}

void PViewActions::makeFileActions() {
    snapshot = add("snapshot", tr("Take a &still"), tr("Still"), Qt::CTRL | Qt::Key_S,
                   tr("Take a still and save it in the capture folder"));
    savePicture =
        add("savePicture", tr("Save displayed &picture as…"), {}, Qt::CTRL | Qt::SHIFT | Qt::Key_S,
            tr("Save the displayed picture under a name of your choice"));
    record = addSwitch("record", tr("&Record"), tr("Record"), Qt::CTRL | Qt::Key_R,
                       tr("Record a number of frames, a duration, or a time-lapse"));
    captureFiles = add("captureFiles", tr("F&older and names…"), {}, {},
                       tr("Choose folder and names of pictures and recordings"));
    loadProfile = add("loadProfile", tr("&Load profile…"), {}, Qt::CTRL | Qt::Key_O,
                      tr("Apply the settings in a file"));
    saveProfile = add("saveProfile", tr("Save pro&file…"), {}, Qt::CTRL | Qt::SHIFT | Qt::Key_O,
                      tr("Save the camera's settings to a file"));
    closeCamera = add("closeCamera", tr("&Close camera"), {}, Qt::CTRL | Qt::Key_W,
                      tr("Close the current camera"));
    quit = add("quit", tr("&Quit"), {}, Qt::CTRL | Qt::Key_Q, tr("Close all cameras and quit"));
    quit->setMenuRole(QAction::QuitRole);
}

void PViewActions::makeCameraActions() {
    live = addSwitch("live", tr("&Live picture"), tr("Live"), Qt::CTRL | Qt::Key_L,
                     tr("Start or stop the live picture"));
    region = addSwitch("region", tr("&Draw region"), tr("Region"), Qt::CTRL | Qt::Key_D,
                       tr("Use the mouse to draw the region that the camera sends"));
    wholeSensor = add("wholeSensor", tr("&Whole sensor"), tr("Whole sensor"),
                      Qt::CTRL | Qt::SHIFT | Qt::Key_D, tr("Use the whole sensor again"));
    pixelSize = add("pixelSize", tr("Pixel &size…"), {}, {},
                    tr("Set the size of a pixel on the specimen, for the scale bar"));
    search =
        add("search", tr("Search for &cameras"), {}, Qt::Key_F5, tr("Search for cameras again"));
}

void PViewActions::makeViewActions() {
    fit = add("fit", tr("&Fit to window"), tr("Fit"), Qt::CTRL | Qt::Key_0,
              tr("Show the whole picture"));
    actualSize = add("actualSize", tr("&Actual pixels"), tr("1:1"), Qt::CTRL | Qt::Key_1,
                     tr("Show at 100 %"));
    zoomIn = add("zoomIn", tr("Zoom &in"), {}, QKeySequence::ZoomIn, tr("Zoom in"));
    zoomOut = add("zoomOut", tr("Zoom &out"), {}, QKeySequence::ZoomOut, tr("Zoom out"));
    fullScreen = addSwitch("fullScreen", tr("F&ull screen"), tr("Full screen"), Qt::Key_F11,
                           tr("Show only the picture; press Esc to return"));
    clipped = addSwitch("clipped", tr("Mark &clipped pixels"), tr("Clipping"), Qt::CTRL | Qt::Key_K,
                        tr("Mark overexposed pixels in red and black pixels in blue"));
    autoContrast =
        addSwitch("autoContrast", tr("Stretch contras&t"), tr("Contrast"), Qt::CTRL | Qt::Key_T,
                  tr("Stretch the contrast on the screen; saved pictures are not changed"));
}

void PViewActions::makeHelpActions() {
    help = add("help", tr("&Keyboard and mouse"), {}, Qt::Key_F1,
               tr("Show keyboard shortcuts and mouse actions"));
    about = add("about", tr("&About pcdview"), {}, {},
                tr("Show version numbers and the camera library in use"));
    about->setMenuRole(QAction::AboutRole);
}

/// By freedesktop's names; what these lack, as the icon theme Breeze calls it.
void PViewActions::setIcons() {
    const std::pair<QAction*, QString> names[]{{snapshot, u"camera-photo"_qs},
                                               {savePicture, u"document-save-as"_qs},
                                               {record, u"media-record"_qs},
                                               {captureFiles, u"folder"_qs},
                                               {loadProfile, u"document-open"_qs},
                                               {saveProfile, u"document-save"_qs},
                                               {closeCamera, u"window-close"_qs},
                                               {quit, u"application-exit"_qs},
                                               {live, u"camera-video"_qs},
                                               {region, u"transform-crop"_qs},
                                               {wholeSensor, u"edit-select-all"_qs},
                                               {pixelSize, u"measure"_qs},
                                               {search, u"view-refresh"_qs},
                                               {fit, u"zoom-fit-best"_qs},
                                               {actualSize, u"zoom-original"_qs},
                                               {zoomIn, u"zoom-in"_qs},
                                               {zoomOut, u"zoom-out"_qs},
                                               {fullScreen, u"view-fullscreen"_qs},
                                               {clipped, u"draw-highlight"_qs},
                                               {autoContrast, u"contrast"_qs},
                                               {help, u"help-contents"_qs},
                                               {about, u"help-about"_qs}};
    for (const auto& [action, name] : names)
        action->setIcon(PActionIcon::make(name));
}

void PViewActions::setObstacle(QAction* action, const QString& reason) {
    action->setEnabled(reason.isEmpty());
    const QString notNow = reason.isEmpty() ? QString() : u'\n' + tr("Not now: %1").arg(reason);
    action->setToolTip(action->whatsThis() + notNow);
}

QList<QAction*> PViewActions::ofCamera() const {
    return {snapshot,    savePicture, record, loadProfile, saveProfile,
            closeCamera, live,        region, pixelSize,   wholeSensor,
            fit,         actualSize,  zoomIn, zoomOut,     fullScreen};
}

QList<QAction*> PViewActions::withShortcut() const {
    QList<QAction*> result;
    for (QAction* action : m_window->actions()) {
        if (!action->shortcut().isEmpty())
            result.append(action);
    }
    return result;
}

#include "moc_PViewActions.cpp"
