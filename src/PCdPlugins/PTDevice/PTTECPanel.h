// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/PTPanel.h>

#include <memory>
#include <optional>

class PTECProperty;
class QTimer;
struct TECDATA;

namespace Ui {
class PTTecControl;
}

/// The panel of a cooler: switch, target temperature, and the present temperature and voltage, read
/// ten times a second until the device is unlinked. After the property is deleted, it does nothing.
/// The GUI thread, which is the device's.
class PTTECPanel : public PTPanel {
public:
    /// Sends the stored switch and target to the camera; a refusal is not detected.
    explicit PTTECPanel(PTECProperty* property);
    ~PTTECPanel() override;

private:
    struct Readings {
        short temperature = 0; ///< tenths of a degree Celsius
        int voltage = 0;       ///< tenths of a volt, like the next
        int highestVoltage = 0;
    };

    void connectControls();
    void connectProperty();
    void showValue(const TECDATA& d);
    void setOn(bool on);
    void setTarget(double degrees);
    void refresh();
    void showReadings();
    void retranslate();

    PTECProperty* m_property; ///< used only in slots that are disconnected with it
    std::unique_ptr<Ui::PTTecControl> m_ui;
    std::optional<Readings> m_readings; ///< the last ones; none until the first refresh
};
