// SPDX-License-Identifier: MIT
#pragma once

#include <apps/mutants/Mutant.h>
#include <apps/mutants/MutantProperty.h>
#include <apps/mutants/MutantStream.h>

#include <PatternDevice.h>

#include <PCd/frame/PDeviceMode.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <PDip/PImage.h>

#include <QRect>

#include <atomic>

/// The device of examples/driver with a trigger, a region and a cooler, which breaks one rule of
/// `pcdctl check`, or none.
class MutantDevice : public PatternDevice {
    Q_OBJECT

public:
    explicit MutantDevice(QObject* parent);
    ~MutantDevice() override { m_stream.stop(); }

    QByteArray getModel() const override;
    QByteArray getSerial() const override;
    bool isSupportStillCapture() const override { return !breaks("still.refused-without"); }
    bool triggerStillCapture() override;
    bool tryFireSoftwareTrigger() override { return breaks("trigger.refused-without"); }
    bool tryLink() override;
    bool tryUnlink() override {
        fault("tryUnlink");
        return !breaks("open.unlink");
    }
    bool tryStartStream() override;
    bool tryStopStream() override;
    PDeviceMode getCurrentMode() override;
    bool trySetMode(const PDeviceMode& mode) override;
    QList<PDeviceMode> getSupportModes() override;
    QList<PDeviceProperty*> getSupportProperties() override;
    QList<PDevicePropertyGroup*> getSupportPropertyGroups() override;
    bool readStreamThis(PAbstractReader* reader) override;

    /// No further frame comes from this stream.
    void pause() { m_isPaused = m_stream.isRunning(); }
    /// Before it leaves the list because the camera was unplugged.
    void setUnplugged() { m_isUnplugged = true; }
    /// Opens a file for ever.
    static void leakFile();
    /// After the camera was plugged in again.
    void setReplugged() { m_isReplugged = true; }

private:
    bool isSilent();
    void sendFrame();
    void keepAndSpoil(PImage& image);
    bool waitForHost();
    PImage makeImage(const QSize& size, int number) const;
    void leak();

    void breakNumber(QList<PDeviceProperty*>& properties);
    void breakSwitch(QList<PDeviceProperty*>& properties);
    void breakChoice(QList<PDeviceProperty*>& properties);
    void addExtras(QList<PDeviceProperty*>& properties);
    PDeviceProperty* makeRegion();
    PDeviceProperty* makeCooler();

    MutantStream m_stream;
    QList<PDeviceProperty*> m_made;
    QList<PDevicePropertyGroup*> m_madeGroups;
    QRect m_region;
    QSize m_startSize;
    int m_links = 0;
    int m_starts = 0;
    int m_startsInMode = 0;
    int m_stops = 0;
    int m_slowReadings = 0;
    bool m_isCooled = false;
    bool m_isModeLost = false;
    bool m_isModeInside = false; ///< getCurrentMode() is running
    bool m_areModesRead = false;
    bool m_isReplugged = false;
    bool m_isUnplugged = false;
    bool m_wasTriggered = false;
    bool m_stoppedEarly = false;
    bool m_isStuck = false;
    std::atomic<bool> m_isPaused = false;
    std::atomic<bool> m_isLongest = false; ///< the exposure time
    std::atomic<bool> m_isTriggered = false;
    std::atomic<int> m_shots = 0;
    std::atomic<int> m_resolution = 0;
    std::atomic<int> m_frames = 0; ///< of this stream
    std::atomic<int> m_answered = 0;

    // Of the frame thread.
    PImage m_kept;
    unsigned char* m_keptPixels = nullptr;
};
