// SPDX-License-Identifier: MIT
#include "PTTECProperty.h"

#include "PTDevice.h"
#include "PTPanel.h"
#include "ui_PTTecControl.h"

#include <QPointer>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace {

constexpr std::chrono::milliseconds refreshInterval(100);
constexpr PMinMaxRange<double> offeredTargets{-30.0, 30.0, 0.1}; // degrees Celsius

struct Readings {
    short temperature = 0; ///< tenths of a degree Celsius
    int voltage = 0;       ///< tenths of a volt, as the next
    int highestVoltage = 0;
};

/// The form, and what it shows of the camera.
struct TecForm : Ui::PTTecControl {
    std::optional<Readings> readings; ///< the last ones; none until the first refresh
};
using Form = std::shared_ptr<TecForm>;

/// A number of tenths as people read it.
QString tenths(int value) {
    return QString::number(value / 10.0, 'g', 3);
}

void showReadings(const TecForm& ui) {
    if (!ui.readings)
        return;
    ui.tecVoltage->setText(
        PTECProperty::tr("%1/%2 (current/max)")
            .arg(tenths(ui.readings->voltage), tenths(ui.readings->highestVoltage)));
    ui.temp->setText(tenths(ui.readings->temperature));
}

void refresh(Toupcam_t* handle, const Form& ui) {
    Readings now;
    Toupcam_get_Temperature(handle, &now.temperature);
    Toupcam_get_Option(handle, TOUPCAM_OPTION_TEC_VOLTAGE, &now.voltage);
    Toupcam_get_Option(handle, TOUPCAM_OPTION_TEC_VOLTAGE_MAX, &now.highestVoltage);
    ui->readings = now;
    showReadings(*ui);
}

} // namespace

PTECProperty::PTECProperty(Toupcam_t* handle, const QByteArray& id, const QString& title)
    : PDevicePropertyT(id, title, PCD::DevicePropertyType::Custom)
    , m_h(handle) {
}

bool PTECProperty::trySetValueToDevice(TECDATA d) {
    Toupcam_put_Option(m_h, TOUPCAM_OPTION_TEC, d.on);
    return checkError(Toupcam_put_Temperature(m_h, d.target));
}

TECDATA PTECProperty::tryGetValueFromDevice() {
    TECDATA d = value();
    Toupcam_get_Option(m_h, TOUPCAM_OPTION_TEC, &d.on);
    return d;
}

TECDATA PTECProperty::convertToT(QVariant value) const {
    return value.value<TECDATA>();
}

QVariant PTECProperty::convertFromT(TECDATA value) const {
    return QVariant::fromValue(value);
}

void PTECProperty::trySetRange(QVariant) {
}

QVariant PTECProperty::sensorTemperature() const {
    short tenthsOfDegree = 0;
    return checkError(Toupcam_get_Temperature(m_h, &tenthsOfDegree)) ? tenthsOfDegree / 10.0
                                                                     : QVariant();
}

QWidget* PTECProperty::createWidget() {
    auto* const panel = new PTPanel;
    auto* const timer = new QTimer(panel);
    const Form ui = std::make_shared<TecForm>(); // the connections keep it
    ui->setupUi(panel);
    const QPointer<QTimer> ticking(timer);
    if (PDevice* const owner = device()) {
        connect(owner, &PDevice::unlinked, this, [ticking] {
            if (ticking)
                ticking->stop();
        });
    }

    // The camera may have been opened anew since these were set: a panel shows what holds.
    const TECDATA now = value();
    Toupcam_put_Option(m_h, TOUPCAM_OPTION_TEC, now.on);
    Toupcam_put_Temperature(m_h, now.target);

    ui->checkBox->setChecked(now.on != 0);
    ui->widget->showValue(offeredTargets, now.target / 10.0);

    connect(ui->checkBox, &QCheckBox::toggled, this, panel->whileAlive([this](bool on) {
        Toupcam_put_Option(m_h, TOUPCAM_OPTION_TEC, on ? 1 : 0);
        setValue(convertFromT({on ? 1 : 0, value().target}));
    }));
    connect(ui->widget, &PDoubleRangeWidget::valueChanged, this,
            panel->whileAlive([this](double degrees) {
                const double wanted = degrees * 10;
                // The property's own echo, which comes back with the last digit rounded.
                if (qFuzzyCompare(double(value().target), wanted))
                    return;
                setValue(convertFromT({value().on, qint16(wanted)}));
            }));
    connect(this, &PDeviceProperty::valueChanged, this,
            panel->whileAlive([this, ui](const QVariant& changed) {
                const TECDATA d = convertToT(changed);
                ui->checkBox->setChecked(d.on != 0);
                // Not by setValue(), which would send a target that the panel does not offer back
                // as the nearest one that it does.
                ui->widget->showValue(offeredTargets, d.target / 10.0);
            }));
    const QPointer<PTECProperty> self(this);
    connect(timer, &QTimer::timeout, panel, panel->whileAlive([self, ui](const auto&) {
        if (self) // else its camera is closed
            refresh(self->m_h, ui);
    }));
    panel->setRetranslation([ui, panel] {
        ui->retranslateUi(panel);
        showReadings(*ui); // the form itself knows only their places
    });
    timer->start(refreshInterval);
    return panel;
}
