// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTTECPanel.h>

#include "ui_PTTecControl.h"
#include <PCdPlugins/PTDevice/PTTECProperty.h>

#include <PCd/device/PDevice.h>

#include <PCore/PMinMaxRange.h>

#include <PGui/PDoubleRangeWidget.h>

#include <QTimer>

#include <chrono>

namespace {

constexpr std::chrono::milliseconds refreshInterval(100);
constexpr PMinMaxRange<double> offeredTargets{-30.0, 30.0, 0.1}; // degrees Celsius

/// A number of tenths as text.
QString tenthsToText(int value) {
    return QString::number(value / 10.0, 'g', 3);
}

} // namespace

PTTECPanel::PTTECPanel(PTECProperty* property)
    : m_property(property)
    , m_ui(std::make_unique<Ui::PTTecControl>()) {
    m_ui->setupUi(this);
    auto* const timer = new QTimer(this);
    if (PDevice* const device = m_property->device())
        connect(device, &PDevice::unlinked, timer, &QTimer::stop);
    // The camera may have been reopened since these were set, so they are sent: the panel must show
    // applied settings.
    const TECDATA now = m_property->value();
    Toupcam_put_Option(m_property->m_h, TOUPCAM_OPTION_TEC, now.on);
    Toupcam_put_Temperature(m_property->m_h, now.target);
    showValue(now);
    connectControls();
    connectProperty();
    setRetranslation([this] { retranslate(); });
    // Stops with the property: then the camera is closed, and the last readings stay.
    connect(timer, &QTimer::timeout, m_property, whileAlive([this](const auto&) { refresh(); }));
    timer->start(refreshInterval);
}

PTTECPanel::~PTTECPanel() {
    endLife();
}

void PTTECPanel::connectControls() {
    connect(m_ui->checkBox, &QCheckBox::toggled, m_property,
            whileAlive([this](bool on) { setOn(on); }));
    connect(m_ui->widget, &PDoubleRangeWidget::valueChanged, m_property,
            whileAlive([this](double degrees) { setTarget(degrees); }));
}

void PTTECPanel::connectProperty() {
    connect(
        m_property, &PDeviceProperty::valueChanged, this,
        whileAlive([this](const QVariant& value) { showValue(m_property->convertToT(value)); }));
}

void PTTECPanel::showValue(const TECDATA& d) {
    m_ui->checkBox->setChecked(d.on != 0);
    // Not setValue(), which would change a target outside the panel's range to the nearest one, and
    // send it.
    m_ui->widget->showValue(offeredTargets, d.target / 10.0);
}

void PTTECPanel::setOn(bool on) {
    Toupcam_put_Option(m_property->m_h, TOUPCAM_OPTION_TEC, on ? 1 : 0);
    m_property->setValue(m_property->convertFromT({on ? 1 : 0, m_property->value().target}));
}

void PTTECPanel::setTarget(double degrees) {
    const TECDATA now = m_property->value();
    const double tenths = degrees * 10;
    // The property's signal for our own change, with the last digit rounded.
    if (!qFuzzyCompare(double(now.target), tenths))
        m_property->setValue(m_property->convertFromT({now.on, qint16(tenths)}));
}

void PTTECPanel::refresh() {
    Readings now;
    Toupcam_get_Temperature(m_property->m_h, &now.temperature);
    Toupcam_get_Option(m_property->m_h, TOUPCAM_OPTION_TEC_VOLTAGE, &now.voltage);
    Toupcam_get_Option(m_property->m_h, TOUPCAM_OPTION_TEC_VOLTAGE_MAX, &now.highestVoltage);
    m_readings = now;
    showReadings();
}

void PTTECPanel::showReadings() {
    if (!m_readings)
        return;
    m_ui->tecVoltage->setText(
        PTECProperty::tr("%1/%2 (current/max)")
            .arg(tenthsToText(m_readings->voltage), tenthsToText(m_readings->highestVoltage)));
    m_ui->temp->setText(tenthsToText(m_readings->temperature));
}

void PTTECPanel::retranslate() {
    m_ui->retranslateUi(this);
    showReadings(); // the form itself has only placeholders
}
