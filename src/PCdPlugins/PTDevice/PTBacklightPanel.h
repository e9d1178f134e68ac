// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/PTPanel.h>

#include <memory>

class PTBacklightProperty;
class QRadioButton;

namespace Ui {
class PTBacklight;
}

/// The panel of the light frequency: a button for each of the SDK's codes. After the property is
/// deleted, it does nothing. The GUI thread, which is the device's.
class PTBacklightPanel : public PTPanel {
public:
    explicit PTBacklightPanel(PTBacklightProperty* property);
    ~PTBacklightPanel() override;

private:
    void connectButton(QRadioButton* button, int frequency);
    void follow(int frequency);
    void setExclusive(bool exclusive);
    void showValue(int frequency);

    PTBacklightProperty* m_property; ///< used only in slots that are disconnected with it
    std::unique_ptr<Ui::PTBacklight> m_ui;
};
