// SPDX-License-Identifier: MIT
#include "PTFanDevice.h"

#include "PTDevice.h"
#include "PTLog.h"
#include "PTPanel.h"
#include "ui_PTFanControl.h"

#include <QDebug>

#include <memory>

namespace {

/// A fan whose state could not be read is not shown as running.
bool isShownOn(const FANDATA& d) {
    return d.enable != 0 && d.enable != -1;
}

} // namespace

PTFanProperty::PTFanProperty(Toupcam_t* handle, const QByteArray& id, const QString& title)
    : PDevicePropertyT(id, title, PCD::DevicePropertyType::Custom)
    , m_h(handle) {
}

bool PTFanProperty::trySetValueToDevice(FANDATA d) {
    qDebug() << "Set value to device:" << d.enable << d.target;
    if (d.enable != 0) {
        qDebug() << "Assign fan speed:" << d.target;
        PT_OP(Toupcam_put_Option(m_h, TOUPCAM_OPTION_FAN, d.target));
    } else {
        PT_OP(Toupcam_put_Option(m_h, TOUPCAM_OPTION_FAN, 0));
    }
    return true;
}

FANDATA PTFanProperty::tryGetValueFromDevice() {
    int speed = 0;
    if (!checkError(Toupcam_get_Option(m_h, TOUPCAM_OPTION_FAN, &speed)))
        return {-1, 0};
    return {speed >= 1 ? 1 : 0, speed};
}

FANDATA PTFanProperty::convertToT(QVariant value) const {
    return value.value<FANDATA>();
}

QVariant PTFanProperty::convertFromT(FANDATA value) const {
    return QVariant::fromValue(value);
}

void PTFanProperty::trySetRange(QVariant) {
}

QWidget* PTFanProperty::createWidget() {
    auto* const panel = new PTPanel;
    const auto ui = std::make_shared<Ui::PTFanControl>(); // the connections keep it
    ui->setupUi(panel);
    const FANDATA now = convertToT(valueInner());
    ui->fanOnOff->setChecked(isShownOn(now));
    ui->range->setRange({0, Toupcam_get_FanMaxSpeed(m_h), 1});
    ui->range->setValue(now.target);

    connect(ui->fanOnOff, &QCheckBox::toggled, this, panel->whileAlive([this](bool on) {
        if (!m_updating)
            setValue(convertFromT({on ? 1 : 0, convertToT(valueInner()).target}));
    }));
    connect(ui->range, &PRangeWidget::valueChanged, this, panel->whileAlive([this](int speed) {
        if (!m_updating)
            setValue(convertFromT({convertToT(valueInner()).enable, speed}));
    }));
    connect(this, &PDeviceProperty::valueChanged, this,
            panel->whileAlive([this, ui](const QVariant& value) {
                if (m_updating)
                    return;
                m_updating = true;
                const FANDATA d = convertToT(value);
                ui->fanOnOff->setChecked(isShownOn(d));
                ui->range->setValue(d.target);
                m_updating = false;
            }));
    panel->setRetranslation([ui, panel] { ui->retranslateUi(panel); });
    return panel;
}
