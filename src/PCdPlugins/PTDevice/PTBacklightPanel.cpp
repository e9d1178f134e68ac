// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTBacklightPanel.h>

#include "ui_PTBacklight.h"
#include <PCdPlugins/PTDevice/PTPropBacklight.h>

#include <initializer_list>

namespace {

enum Frequency { Hz60 = 0, Hz50 = 1, DirectCurrent = 2 };

constexpr int unknown = -1; // no button has it

} // namespace

PTBacklightPanel::PTBacklightPanel(PTBacklightProperty* property)
    : m_property(property)
    , m_ui(std::make_unique<Ui::PTBacklight>()) {
    m_ui->setupUi(this);
    follow(m_property->convertToT(m_property->valueInner()));
    // The captions of the two frequencies are deliberately swapped: the code is what matters, and
    // users know which button stops the flicker of their lamp.
    connectButton(m_ui->dc, DirectCurrent);
    connectButton(m_ui->hz50, Hz50);
    connectButton(m_ui->hz60, Hz60);
    connect(m_property, qOverload<int>(&PDevicePropertyInt::valueChanged), this,
            whileAlive([this](int frequency) { follow(frequency); }), Qt::DirectConnection);
    setRetranslation([this] { m_ui->retranslateUi(this); });
}

PTBacklightPanel::~PTBacklightPanel() {
    endLife();
}

void PTBacklightPanel::connectButton(QRadioButton* button, int frequency) {
    const auto setWhenOn = [this, frequency](bool on) {
        if (on)
            m_property->setValue(m_property->convertFromT(frequency));
    };
    connect(button, &QRadioButton::toggled, m_property, whileAlive(setWhenOn),
            Qt::DirectConnection);
}

/// A frequency that the camera did not report is not shown as another one, whose button would then
/// send it.
void PTBacklightPanel::follow(int frequency) {
    showValue(m_property->isUnread() ? unknown : frequency);
}

void PTBacklightPanel::setExclusive(bool exclusive) {
    for (QRadioButton* button : {m_ui->dc, m_ui->hz50, m_ui->hz60})
        button->setAutoExclusive(exclusive);
}

void PTBacklightPanel::showValue(int frequency) {
    // Exclusive buttons keep one checked, but a code without a button must not be shown as another
    // one.
    setExclusive(false);
    m_ui->dc->setChecked(frequency == DirectCurrent);
    m_ui->hz50->setChecked(frequency == Hz50);
    m_ui->hz60->setChecked(frequency == Hz60);
    setExclusive(true);
}
