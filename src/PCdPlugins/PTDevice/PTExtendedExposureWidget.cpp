// SPDX-License-Identifier: MIT
#include "PTExtendedExposureWidget.h"

#include "PTDevice.h"
#include "PTLog.h"
#include "ui_PTExtendedExposure.h"

#include <PCd/frame/PCdDipUtils.h>

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>
#include <functional>
#include <initializer_list>

namespace {

constexpr unsigned short endlessTrigger = 0xffff;
// Longer exposures are for the trigger page, whatever the camera can.
constexpr double longestVideoExposure = 5000.0; // milliseconds

} // namespace

PTExtendedExposureWidget::PTExtendedExposureWidget(PTExtendedExposure* property, QWidget* parent)
    : PTPanel(parent)
    , m_ui(std::make_unique<Ui::PTExtendedExposure>())
    , m_property(property) {
    m_ui->setupUi(this);
    // The form's style gives these two a light ground and leaves the text to the palette, whose own
    // is light too in dark colours.
    for (QPushButton* const page : {m_ui->pbVideo, m_ui->pbTrigger}) {
        QPalette colors = page->palette();
        colors.setColor(QPalette::ButtonText, Qt::black);
        page->setPalette(colors);
    }
    setupUiInitialState(m_property->tryGetValueFromDevice());
    setupConnections();
    setRetranslation([this] { retranslate(); });
}

PTExtendedExposureWidget::~PTExtendedExposureWidget() {
    endLife();
}

void PTExtendedExposureWidget::setupUiInitialState(const ExtendedExposureData& d) {
    m_ui->cbAutoExposure->setChecked(d.autoexpenabled);
    m_ui->exposureTarget->setRange({10, 230, 1});
    m_ui->exposureTarget->setValue(d.target);
    m_ui->exposureGain->setRange({m_property->uGainMin, m_property->uGainMax, 1});
    m_ui->exposureGain->setValue(d.gain);
    m_ui->exposureTime->setRange({m_property->uMinTime / 1000.0,
                                  std::min(m_property->uMaxTime / 1000.0, longestVideoExposure),
                                  0.01});
    m_ui->exposureTime->setValue(d.exp);
    const auto* const device = qobject_cast<const PTDevice*>(m_property->device());
    const bool softTrigger =
        device != nullptr && (device->flags() & TOUPCAM_FLAG_TRIGGER_SOFTWARE) != 0;
    m_ui->page_2->setEnabled(softTrigger);
    m_ui->pbTrigger->setEnabled(softTrigger);
    showPage(d.capturemode);
    m_ui->cbTriggerMode->setCurrentIndex(d.triggermode);
    m_ui->sM->setValue(d.minutes);
    m_ui->sSec->setValue(d.seconds);
    m_ui->sMS->setValue(d.milliseconds);
    m_ui->sUS->setValue(d.microseconds);
    m_ui->spincount->setValue(d.spincount);
    updateState(d);
}

void PTExtendedExposureWidget::showPage(int capturemode) {
    if (capturemode == ExtendedExposureData::Video || capturemode == ExtendedExposureData::Trigger)
        m_ui->stackedWidget->setCurrentIndex(capturemode);
}

void PTExtendedExposureWidget::updateState(const ExtendedExposureData& d) {
    m_ui->exposureTarget->setEnabled(d.autoexpenabled);
    m_ui->exposureGain->setEnabled(!d.autoexpenabled);
    m_ui->exposureTime->setEnabled(!d.autoexpenabled);
    m_ui->pbVideo->setChecked(d.capturemode == ExtendedExposureData::Video);
    m_ui->pbTrigger->setChecked(d.capturemode == ExtendedExposureData::Trigger);
    showPage(d.capturemode);
    updateRunButtons();
    const bool idle = !isRunning();
    for (QWidget* control : std::initializer_list<QWidget*>{
             m_ui->sM, m_ui->sMS, m_ui->sSec, m_ui->sUS, m_ui->spincount, m_ui->cbTriggerMode})
        control->setEnabled(idle);
}

bool PTExtendedExposureWidget::isRunning() const {
    const auto buttons = runButtons();
    return std::any_of(buttons.begin(), buttons.end(), std::mem_fn(&QPushButton::isChecked));
}

/// The form's own texts, of which only a running button's is another one.
void PTExtendedExposureWidget::retranslate() {
    m_ui->retranslateUi(this);
    for (QPushButton* button : runButtons()) {
        if (button->isChecked())
            button->setText(tr("Stop"));
    }
}

std::array<QPushButton*, 3> PTExtendedExposureWidget::runButtons() const {
    return {m_ui->pbRunOnce, m_ui->pbSequence, m_ui->pbRepeatMode};
}

/// While one runs the others cannot be pressed; idle, an external trigger leaves only sequences.
void PTExtendedExposureWidget::updateRunButtons() {
    const auto buttons = runButtons();
    for (QPushButton* running : buttons) {
        if (!running->isChecked())
            continue;
        for (QPushButton* other : buttons) {
            if (other != running)
                other->setEnabled(false);
        }
        return;
    }
    const bool external =
        m_ui->cbTriggerMode->currentIndex() == ExtendedExposureData::ExternalTrigger;
    m_ui->pbRunOnce->setEnabled(!external);
    m_ui->pbSequence->setEnabled(true);
    m_ui->pbRepeatMode->setEnabled(!external);
}

void PTExtendedExposureWidget::setupConnections() {
    connectControls();
    connectRunButtons();
    connectDevice();
}

void PTExtendedExposureWidget::connectControls() {
    const auto write = whileAlive([this](const auto&) { writeBack(); });
    connect(m_ui->exposureTarget, &PRangeWidget::valueChanged, this, write);
    connect(m_ui->exposureTime, &PDoubleRangeWidget::valueChanged, this, write);
    connect(m_ui->exposureGain, &PRangeWidget::valueChanged, this, write);
    connect(m_ui->cbAutoExposure, &QCheckBox::toggled, this, write);
    connect(m_ui->pbVideo, &QPushButton::toggled, this, write);
    connect(m_ui->pbTrigger, &QPushButton::toggled, this, write);
    connect(m_ui->cbTriggerMode, &QComboBox::currentIndexChanged, this, write);
    for (QSpinBox* box : {m_ui->sM, m_ui->sSec, m_ui->sMS, m_ui->sUS, m_ui->spincount})
        connect(box, &QSpinBox::valueChanged, this, write);
    const auto goToVideo = [this](bool on) {
        if (!on)
            return;
        m_ui->stackedWidget->setCurrentIndex(ExtendedExposureData::Video);
        for (QPushButton* button : runButtons())
            button->setChecked(false);
    };
    const auto goToTrigger = [this](bool on) {
        if (on)
            m_ui->stackedWidget->setCurrentIndex(ExtendedExposureData::Trigger);
    };
    connect(m_ui->pbVideo, &QPushButton::toggled, this, whileAlive(goToVideo));
    connect(m_ui->pbTrigger, &QPushButton::toggled, this, whileAlive(goToTrigger));
}

void PTExtendedExposureWidget::connectRunButtons() {
    connect(m_ui->pbRunOnce, &QPushButton::toggled, this,
            whileAlive([this](bool on) { runOnce(on); }));
    connect(m_ui->pbSequence, &QPushButton::toggled, this,
            whileAlive([this](bool on) { runSequence(on); }));
    connect(m_ui->pbRepeatMode, &QPushButton::toggled, this,
            whileAlive([this](bool on) { runRepeat(on); }));
}

void PTExtendedExposureWidget::connectDevice() {
    // With the panel as the receiver these connections end only in ~QObject: slots of destroyed()
    // can still bring an image or a value to a panel whose own parts are gone.
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

/// Each control that changes writes back, as if the user had changed it; only the property's answer
/// to that is kept from coming in here again.
void PTExtendedExposureWidget::updateFromValue(const ExtendedExposureData& d) {
    updatingFromValue = true;
    m_ui->cbAutoExposure->setChecked(d.autoexpenabled);
    m_ui->exposureTarget->setValue(d.target);
    m_ui->exposureGain->setValue(d.gain);
    m_ui->exposureTime->setValue(d.exp);
    showPage(d.capturemode);
    m_ui->cbTriggerMode->setCurrentIndex(d.triggermode);
    m_ui->sM->setValue(d.minutes);
    m_ui->sSec->setValue(d.seconds);
    m_ui->sMS->setValue(d.milliseconds);
    m_ui->sUS->setValue(d.microseconds);
    m_ui->spincount->setValue(d.spincount);
    updateState(d);
    updatingFromValue = false;
}

ExtendedExposureData PTExtendedExposureWidget::recordOfControls() const {
    ExtendedExposureData d;
    d.target = quint16(m_ui->exposureTarget->value());
    d.gain = quint16(m_ui->exposureGain->value());
    d.autoexpenabled = m_ui->cbAutoExposure->isChecked();
    d.exp = m_ui->exposureTime->value();
    const bool trigger = !m_ui->pbVideo->isChecked() && m_ui->pbTrigger->isChecked();
    d.capturemode = trigger ? ExtendedExposureData::Trigger : ExtendedExposureData::Video;
    d.triggermode = m_ui->cbTriggerMode->currentIndex();
    d.minutes = m_ui->sM->value();
    d.seconds = m_ui->sSec->value();
    d.milliseconds = m_ui->sMS->value();
    d.microseconds = m_ui->sUS->value();
    d.spincount = m_ui->spincount->value();
    return d;
}

void PTExtendedExposureWidget::writeBack() {
    if (!m_property)
        return;
    m_property->setValue(m_property->convertFromT(recordOfControls()));
}

void PTExtendedExposureWidget::stopTrigger() {
    PT_OP(Toupcam_Trigger(m_property->m_h, 0));
}

// A button that goes up does not end its run's flag: an image on its way still belongs to the run.

void PTExtendedExposureWidget::runOnce(bool on) {
    if (!m_property)
        return;
    if (on) {
        runOnceActive = true;
        m_ui->pbRunOnce->setText(tr("Stop"));
        PT_OP(Toupcam_Trigger(m_property->m_h, 1));
    } else {
        m_ui->pbRunOnce->setText(tr("Run once"));
        stopTrigger();
    }
    updateState(m_property->value());
}

void PTExtendedExposureWidget::runSequence(bool on) {
    if (!m_property)
        return;
    if (on) {
        sequenceActive = true;
        sequenceTarget = m_property->value().spincount;
        sequenceCounter = 0;
        m_ui->pbSequence->setText(tr("Stop"));
        PT_OP_AS(Q_FUNC_INFO, __LINE__,
                 "Toupcam_Trigger(m_property->m_h, m_property->value().spincount)",
                 Toupcam_Trigger(m_property->m_h,
                                 static_cast<unsigned short>(m_property->value().spincount)));
    } else {
        m_ui->pbSequence->setText(tr("Run sequence"));
        stopTrigger();
    }
    updateState(m_property->value());
}

void PTExtendedExposureWidget::runRepeat(bool on) {
    if (!m_property)
        return;
    if (on) {
        repeatActive = true;
        m_ui->pbRepeatMode->setText(tr("Stop"));
        PT_OP_AS(Q_FUNC_INFO, __LINE__, "Toupcam_Trigger(m_property->m_h, 0xffff)",
                 Toupcam_Trigger(m_property->m_h, endlessTrigger));
    } else {
        m_ui->pbRepeatMode->setText(tr("Run repeat"));
        stopTrigger();
    }
    updateState(m_property->value());
}

void PTExtendedExposureWidget::takeImage(const PImage& image) {
    if (!m_property)
        return;
    if (runOnceActive || repeatActive || sequenceActive) {
        qDebug() << "Process snapshot:" << image;
        m_property->device()->processSnapshot(PCdDipUtils::imageAsDeviceFrame(image));
    }
    // Events that are processed in between may be the end of this panel.
    const QPointer<PTExtendedExposureWidget> guard(this);
    finishRunOnce();
    if (guard && sequenceActive)
        countSequenceImage();
}

void PTExtendedExposureWidget::finishRunOnce() {
    bool active = true;
    if (!runOnceActive.compare_exchange_strong(active, false))
        return;
    uncheckLater(m_ui->pbRunOnce);
    processPendingEvents();
}

void PTExtendedExposureWidget::countSequenceImage() {
    const qint32 count = sequenceCounter + 1;
    sequenceCounter = count;
    if (count == sequenceTarget) {
        PT_LOG() << "Stop sequence capture:" << static_cast<void*>(this);
        uncheckLater(m_ui->pbSequence);
        sequenceActive = false;
        sequenceTarget = 0;
        sequenceCounter = 0;
    }
    processPendingEvents();
}

/// Pending events may be images, whose handling ends here too. They leave the events to the first:
/// nested once for each, a backlog of thousands would use up the stack.
void PTExtendedExposureWidget::processPendingEvents() {
    if (processingEvents)
        return;
    processingEvents = true;
    const QPointer<PTExtendedExposureWidget> guard(this); // an event may be the end of this panel
    QCoreApplication::processEvents();
    if (guard)
        processingEvents = false;
}

void PTExtendedExposureWidget::uncheckLater(QPushButton* button) {
    QMetaObject::invokeMethod(button, "setChecked", Qt::QueuedConnection, Q_ARG(bool, false));
}
