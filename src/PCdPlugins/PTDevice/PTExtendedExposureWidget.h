// SPDX-License-Identifier: MIT
#pragma once

#include <PCdPlugins/PTDevice/PTExtendedExposure.h>
#include <PCdPlugins/PTDevice/PTPanel.h>

#include <PDip/PImage.h>

#include <PCore/PExport.h>

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
class PCD_EXPORT PTExtendedExposureWidget : public PTPanel {
    Q_OBJECT

public:
    /// Shows the camera's present settings. Disabled after the property is deleted.
    PTExtendedExposureWidget(PTExtendedExposure* property, QWidget* parent);
    ~PTExtendedExposureWidget() override;

private:
    void setupUiInitialState(const ExtendedExposureData& d);
    void setupConnections();
    void connectPages();
    void connectDevice();
    void updateState(const ExtendedExposureData& d);
    void updateFromValue(const ExtendedExposureData& d);
    void writeBack();
    void retranslate();

    struct Run;
    static const std::array<Run, 3> runs;

    void connectRunButtons();
    QPushButton* button(const Run& run) const;
    void toggleRun(const Run& run, bool on);
    unsigned short beginOnce();
    unsigned short beginSequence();
    unsigned short beginRepeat();
    const Run* pressedRun() const; ///< null while idle
    bool isRunning() const;
    void updateRunButtons();
    void uncheckRunButtons();

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
    bool updatingFromValue = false; ///< ignores the property's signal for our own change
    bool processingEvents = false;  ///< an image's handler is processing pending events
};
