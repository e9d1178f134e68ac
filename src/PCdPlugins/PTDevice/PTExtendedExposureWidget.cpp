// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTExtendedExposureWidget.h>

#include "ui_PTExtendedExposure.h"
#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTExtendedExposureControls.h>

#include <QDebug>

#include <algorithm>
#include <initializer_list>

namespace {

// Longer exposures are for the trigger page, even if the camera supports them here.
constexpr double longestVideoExposure = 5000.0; // milliseconds

/// The form's style gives the buttons of its pages a light background and takes the text colour
/// from the palette, which is light too in a dark theme.
void setTextColours(QPushButton& page) {
    QPalette colours = page.palette();
    colours.setColor(QPalette::ButtonText, Qt::black);
    colours.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(150, 150, 150));
    page.setPalette(colours);
}

/// Says why the trigger page cannot be chosen, if that is so.
void explainTrigger(QPushButton& trigger) {
    const bool isOffered = trigger.isEnabledTo(trigger.parentWidget());
    trigger.setToolTip(
        isOffered ? QString()
                  : PTExtendedExposureWidget::tr("This camera cannot be triggered by software."));
}

} // namespace

PTExtendedExposureWidget::PTExtendedExposureWidget(PTExtendedExposure* property, QWidget* parent)
    : PTPanel(parent)
    , m_ui(std::make_unique<Ui::PTExtendedExposure>())
    , m_property(property) {
    m_ui->setupUi(this);
    setTextColours(*m_ui->pbVideo);
    setTextColours(*m_ui->pbTrigger);
    setupUiInitialState(m_property->tryGetValueFromDevice());
    setupConnections();
    setRetranslation([this] {
        retranslate();
        explainTrigger(*m_ui->pbTrigger);
    });
}

PTExtendedExposureWidget::~PTExtendedExposureWidget() {
    endLife();
}

void PTExtendedExposureWidget::setupUiInitialState(const ExtendedExposureData& d) {
    m_ui->exposureTarget->setRange({10, 230, 1});
    m_ui->exposureGain->setRange({m_property->uGainMin, m_property->uGainMax, 1});
    m_ui->exposureTime->setRange({m_property->uMinTime / 1000.0,
                                  std::min(m_property->uMaxTime / 1000.0, longestVideoExposure),
                                  0.01});
    const auto* const device = qobject_cast<const PTDevice*>(m_property->device());
    const bool softTrigger =
        device != nullptr && (device->flags() & TOUPCAM_FLAG_TRIGGER_SOFTWARE) != 0;
    m_ui->page_2->setEnabled(softTrigger);
    m_ui->pbTrigger->setEnabled(softTrigger);
    explainTrigger(*m_ui->pbTrigger);
    PTExtendedExposureControls::show(*m_ui, d);
    updateState(d);
}

void PTExtendedExposureWidget::updateState(const ExtendedExposureData& d) {
    m_ui->exposureTarget->setEnabled(d.autoexpenabled);
    m_ui->exposureGain->setEnabled(!d.autoexpenabled);
    m_ui->exposureTime->setEnabled(!d.autoexpenabled);
    m_ui->pbVideo->setChecked(d.capturemode == ExtendedExposureData::Video);
    m_ui->pbTrigger->setChecked(d.capturemode == ExtendedExposureData::Trigger);
    PTExtendedExposureControls::showPage(*m_ui, d.capturemode);
    updateRunButtons();
    const bool idle = !isRunning();
    for (QWidget* control : std::initializer_list<QWidget*>{
             m_ui->sM, m_ui->sMS, m_ui->sSec, m_ui->sUS, m_ui->spincount, m_ui->cbTriggerMode})
        control->setEnabled(idle);
}

void PTExtendedExposureWidget::setupConnections() {
    PTExtendedExposureControls::connectAll(*m_ui, this, whileAlive([this] { writeBack(); }));
    connectPages();
    connectRunButtons();
    connectDevice();
}

void PTExtendedExposureWidget::connectPages() {
    const auto goToVideo = [this](bool on) {
        if (!on)
            return;
        m_ui->stackedWidget->setCurrentIndex(ExtendedExposureData::Video);
        uncheckRunButtons();
    };
    const auto goToTrigger = [this](bool on) {
        if (on)
            m_ui->stackedWidget->setCurrentIndex(ExtendedExposureData::Trigger);
    };
    connect(m_ui->pbVideo, &QPushButton::toggled, this, whileAlive(goToVideo));
    connect(m_ui->pbTrigger, &QPushButton::toggled, this, whileAlive(goToTrigger));
}

void PTExtendedExposureWidget::connectDevice() {
    // With the panel as receiver, these connections end only in ~QObject: slots of destroyed()
    // could still pass an image or a value to a partly destroyed panel.
    if (PDevice* const device = m_property->device()) {
        connect(device, &PDevice::imageChanged, this,
                whileAlive([this](const PImage& image) { takeImage(image); }));
    }
    connect(m_property, &QObject::destroyed, this,
            whileAlive([this](const QObject*) { setEnabled(false); }));
    connect(m_property, &PDeviceProperty::valueChanged, this,
            [this, alive = life()](const QVariant& value) {
                if (!alive) {
                    qDebug() << "called on destroyed widget, just ignore";
                    return;
                }
                if (!updatingFromValue)
                    updateFromValue(m_property->convertToT(value));
            });
}

/// Setting a control makes it write the record back, as if the user had changed it; only the
/// property's signal for that write is ignored here.
void PTExtendedExposureWidget::updateFromValue(const ExtendedExposureData& d) {
    updatingFromValue = true;
    PTExtendedExposureControls::show(*m_ui, d);
    updateState(d);
    updatingFromValue = false;
}

void PTExtendedExposureWidget::writeBack() {
    if (!m_property)
        return;
    m_property->setValue(m_property->convertFromT(PTExtendedExposureControls::read(*m_ui)));
}

#include "moc_PTExtendedExposureWidget.cpp"
