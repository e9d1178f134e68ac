// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PHelpController.h>

#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/dialogs/PHelpTexts.h>
#include <apps/pcdview/window/dialogs/PTextDialog.h>

#include <QAction>
#include <QWidget>

PHelpController::PHelpController(const PViewActions& actions, const PCameraSdk& sdk,
                                 QWidget* window)
    : QObject(window) {
    connect(actions.help, &QAction::triggered, window, [&actions, window] {
        PTextDialog::open(window, tr("Keyboard and mouse"),
                          PHelpTexts::keysAndMouse(actions.withShortcut()));
    });
    connect(actions.about, &QAction::triggered, window, [&sdk, window] {
        PTextDialog::open(window, tr("About pcdview"), PHelpTexts::about(sdk));
    });
}

#include "moc_PHelpController.cpp"
