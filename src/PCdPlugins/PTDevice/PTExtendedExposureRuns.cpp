// SPDX-License-Identifier: MIT
// The runs of the exposure panel: their buttons, and the images that become snapshots.
#include "ui_PTExtendedExposure.h"
#include <PCdPlugins/PTDevice/PTExtendedExposureWidget.h>
#include <PCdPlugins/PTDevice/PTLog.h>

#include <PCd/device/PDevice.h>
#include <PCd/frame/PCdDipUtils.h>

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>

namespace {

constexpr unsigned short endlessTrigger = 0xffff;

} // namespace

/// One kind of run.
struct PTExtendedExposureWidget::Run {
    QPushButton* Ui::PTExtendedExposure::*button;
    const char* stoppedText; ///< of the button after the run was stopped; differs from the form's
    unsigned short (PTExtendedExposureWidget::*begin)(); ///< returns the frames to trigger
    const char* call;                                    ///< the trigger call, as logged
};

// In the order in which the buttons are unchecked.
const std::array<PTExtendedExposureWidget::Run, 3> PTExtendedExposureWidget::runs{
    {{&Ui::PTExtendedExposure::pbRunOnce, QT_TRANSLATE_NOOP("PTExtendedExposureWidget", "Run once"),
      &PTExtendedExposureWidget::beginOnce, "Toupcam_Trigger(m_property->m_h, 1)"},
     {&Ui::PTExtendedExposure::pbSequence,
      QT_TRANSLATE_NOOP("PTExtendedExposureWidget", "Run sequence"),
      &PTExtendedExposureWidget::beginSequence,
      "Toupcam_Trigger(m_property->m_h, m_property->value().spincount)"},
     {&Ui::PTExtendedExposure::pbRepeatMode,
      QT_TRANSLATE_NOOP("PTExtendedExposureWidget", "Run repeat"),
      &PTExtendedExposureWidget::beginRepeat, "Toupcam_Trigger(m_property->m_h, 0xffff)"}}};

QPushButton* PTExtendedExposureWidget::button(const Run& run) const {
    return m_ui.get()->*run.button;
}

void PTExtendedExposureWidget::connectRunButtons() {
    for (const Run& run : runs) {
        connect(button(run), &QPushButton::toggled, this,
                whileAlive([this, &run](bool on) { toggleRun(run, on); }));
    }
}

unsigned short PTExtendedExposureWidget::beginOnce() {
    runOnceActive = true;
    return 1;
}

unsigned short PTExtendedExposureWidget::beginSequence() {
    sequenceActive = true;
    const qint32 count = m_property->value().spincount;
    sequenceTarget = count;
    sequenceCounter = 0;
    return static_cast<unsigned short>(count);
}

unsigned short PTExtendedExposureWidget::beginRepeat() {
    repeatActive = true;
    return endlessTrigger;
}

void PTExtendedExposureWidget::toggleRun(const Run& run, bool on) {
    if (!m_property)
        return;
    // Stopping does not clear the run's flag: an image still to arrive belongs to the run.
    const unsigned short frames = on ? (this->*run.begin)() : 0;
    button(run)->setText(on ? tr("Stop") : tr(run.stoppedText));
    PT_OP_AS(Q_FUNC_INFO, __LINE__, (on ? run.call : "Toupcam_Trigger(m_property->m_h, 0)"),
             Toupcam_Trigger(m_property->m_h, frames));
    updateState(m_property->value());
}

const PTExtendedExposureWidget::Run* PTExtendedExposureWidget::pressedRun() const {
    const auto* const found = std::find_if(
        runs.begin(), runs.end(), [this](const Run& run) { return button(run)->isChecked(); });
    return found != runs.end() ? found : nullptr;
}

bool PTExtendedExposureWidget::isRunning() const {
    return pressedRun() != nullptr;
}

void PTExtendedExposureWidget::uncheckRunButtons() {
    for (const Run& run : runs)
        button(run)->setChecked(false);
}

/// During a run the other buttons are disabled; when idle, an external trigger allows only
/// sequences.
void PTExtendedExposureWidget::updateRunButtons() {
    if (const Run* const pressed = pressedRun()) {
        for (const Run& run : runs) {
            if (&run != pressed)
                button(run)->setEnabled(false);
        }
        return;
    }
    const bool external =
        m_ui->cbTriggerMode->currentIndex() == ExtendedExposureData::ExternalTrigger;
    m_ui->pbRunOnce->setEnabled(!external);
    m_ui->pbSequence->setEnabled(true);
    m_ui->pbRepeatMode->setEnabled(!external);
}

/// The form's own texts; only the button of an active run has another one.
void PTExtendedExposureWidget::retranslate() {
    m_ui->retranslateUi(this);
    for (const Run& run : runs) {
        if (button(run)->isChecked())
            button(run)->setText(tr("Stop"));
    }
}

void PTExtendedExposureWidget::takeImage(const PImage& image) {
    if (!m_property)
        return;
    if (runOnceActive || repeatActive || sequenceActive) {
        qDebug() << "Process snapshot:" << image;
        m_property->device()->processSnapshot(PCdDipUtils::imageAsDeviceFrame(image));
    }
    // Events processed in between may delete this panel.
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

/// Pending events may be images, whose handling leads here too. Only the outermost call processes
/// events: one nested call per image would exhaust the stack with a backlog of thousands.
void PTExtendedExposureWidget::processPendingEvents() {
    if (processingEvents)
        return;
    processingEvents = true;
    const QPointer<PTExtendedExposureWidget> guard(this); // an event may delete this panel
    QCoreApplication::processEvents();
    if (guard)
        processingEvents = false;
}

void PTExtendedExposureWidget::uncheckLater(QPushButton* button) {
    // Queued, on the same thread: the caller is still handling the image, and unchecking a button
    // stops its run.
    QMetaObject::invokeMethod(button, "setChecked", Qt::QueuedConnection, Q_ARG(bool, false));
}
