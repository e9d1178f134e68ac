// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/actions/PControllers.h>

#include <apps/pcdview/window/actions/PCameraController.h>
#include <apps/pcdview/window/actions/PHelpController.h>
#include <apps/pcdview/window/actions/PPictureController.h>
#include <apps/pcdview/window/actions/PProfileController.h>
#include <apps/pcdview/window/actions/PRecordController.h>
#include <apps/pcdview/window/actions/PViewActions.h>
#include <apps/pcdview/window/actions/PViewController.h>
#include <apps/pcdview/window/panels/PDockPanels.h>

#include <QWidget>

PControllers::PControllers(const PViewActions& actions, PCameraTabs& tabs, PDockPanels& panels,
                           PRecordings& recordings, const PCameraSdk& sdk, QWidget* window)
    : QObject(window)
    , m_profile(new PProfileController(actions, tabs, window))
    , m_recording(new PRecordController(actions.record, tabs, panels, recordings, window))
    , m_picture(new PPictureController(actions, tabs, window)) {
    const auto* const camera =
        new PCameraController(actions, tabs, *panels.cameras, *m_recording, window);
    new PViewController(actions, tabs, *panels.histogram, window);
    new PHelpController(actions, sdk, window);
    m_profile->setCondition([this](const PViewCamera& one, const PDeviceProfile& profile) {
        return m_recording->mayLoadProfile(one, profile);
    });
    connect(m_recording, &PRecordController::messageChanged, this, &PControllers::messageChanged);
    connect(camera, &PCameraController::messageChanged, this, &PControllers::messageChanged);
    connect(m_picture, &PPictureController::messageChanged, this, &PControllers::messageChanged);
    connect(m_profile, &PProfileController::messageChanged, this, &PControllers::messageChanged);
}

#include "moc_PControllers.cpp"
