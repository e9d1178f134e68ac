// SPDX-License-Identifier: MIT
#pragma once

#include "PTExtendedExposure.h"
#include "PTPanel.h"

#include <PDip/PImage.h>

#include <QPointer>

#include <array>
#include <atomic>
#include <memory>

class QPushButton;

namespace Ui {
class PTExtendedExposure;
}

/// The panel of an extended exposure: a page for video, a page for triggered capture. Every change
/// of a control writes the whole record. While a run is active, each image of the device becomes a
/// snapshot. The GUI thread, which is the device's.
class PTExtendedExposureWidget : public PTPanel {
    Q_OBJECT

public:
    /// Shows what the camera has now. A panel whose property has gone is disabled.
    PTExtendedExposureWidget(PTExtendedExposure* property, QWidget* parent);
    ~PTExtendedExposureWidget() override;

private:
    void setupUiInitialState(const ExtendedExposureData& d);
    void setupConnections();
    void connectControls();
    void connectRunButtons();
    void connectDevice();
    void updateState(const ExtendedExposureData& d);
    void updateRunButtons();
    void updateFromValue(const ExtendedExposureData& d);
    void showPage(int capturemode);
    void retranslate();

    ExtendedExposureData recordOfControls() const;
    void writeBack();

    void runOnce(bool on);
    void runSequence(bool on);
    void runRepeat(bool on);
    void stopTrigger();
    bool isRunning() const;
    std::array<QPushButton*, 3> runButtons() const; // in the order in which they are unchecked

    void takeImage(const PImage& image);
    void finishRunOnce();
    void countSequenceImage();
    void processPendingEvents();
    void uncheckLater(QPushButton* button);

    std::unique_ptr<Ui::PTExtendedExposure> m_ui;
    QPointer<PTExtendedExposure> m_property; ///< the camera's; the panel may outlive it
    std::atomic<bool> runOnceActive{false};
    std::atomic<bool> sequenceActive{false};
    std::atomic<bool> repeatActive{false};
    std::atomic<qint32> sequenceTarget{0};
    std::atomic<qint32> sequenceCounter{0};
    bool updatingFromValue = false; ///< keeps the property's echo out
    bool processingEvents = false;  ///< an image's handler does, until no event is pending
};
