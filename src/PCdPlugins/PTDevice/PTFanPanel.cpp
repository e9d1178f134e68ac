// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTFanPanel.h>

#include "ui_PTFanControl.h"
#include <PCdPlugins/PTDevice/PTFanDevice.h>

#include <PGui/PRangeWidget.h>

#include <QScopedValueRollback>

PTFanPanel::PTFanPanel(PTFanProperty* property)
    : m_property(property)
    , m_ui(std::make_unique<Ui::PTFanControl>()) {
    m_ui->setupUi(this);
    m_ui->range->setRange({0, Toupcam_get_FanMaxSpeed(m_property->m_h), 1});
    showValue(m_property->value());
    connectControls();
    connectProperty();
    setRetranslation([this] { m_ui->retranslateUi(this); });
}

PTFanPanel::~PTFanPanel() {
    endLife();
}

void PTFanPanel::connectControls() {
    const auto setOn = [this](bool on) {
        if (!m_property->m_updating)
            m_property->setValue(
                m_property->convertFromT({on ? 1 : 0, m_property->value().target}));
    };
    const auto setSpeed = [this](int speed) {
        if (!m_property->m_updating)
            m_property->setValue(m_property->convertFromT({m_property->value().enable, speed}));
    };
    connect(m_ui->fanOnOff, &QCheckBox::toggled, m_property, whileAlive(setOn));
    connect(m_ui->range, &PRangeWidget::valueChanged, m_property, whileAlive(setSpeed));
}

void PTFanPanel::connectProperty() {
    const auto follow = [this](const QVariant& value) {
        if (m_property->m_updating)
            return;
        const QScopedValueRollback<bool> following(m_property->m_updating, true);
        showValue(m_property->convertToT(value));
    };
    connect(m_property, &PDeviceProperty::valueChanged, this, whileAlive(follow));
}

void PTFanPanel::showValue(const FANDATA& d) {
    // If the state of the fan could not be read, it is not shown as running.
    m_ui->fanOnOff->setChecked(d.enable != 0 && d.enable != -1);
    m_ui->range->setValue(d.target);
}
