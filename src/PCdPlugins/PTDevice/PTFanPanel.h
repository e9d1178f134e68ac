// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/PTPanel.h>

#include <memory>

class PTFanProperty;
struct FANDATA;

namespace Ui {
class PTFanControl;
}

/// The panel of a fan: switch and speed. Shows the property's value and sets what the user changes;
/// after the property is deleted, it does nothing. The GUI thread, which is the device's.
class PTFanPanel : public PTPanel {
public:
    /// Reads the highest speed from the camera, once.
    explicit PTFanPanel(PTFanProperty* property);
    ~PTFanPanel() override;

private:
    void connectControls();
    void connectProperty();
    void showValue(const FANDATA& d);

    PTFanProperty* m_property; ///< used only in slots that are disconnected with it
    std::unique_ptr<Ui::PTFanControl> m_ui;
};
