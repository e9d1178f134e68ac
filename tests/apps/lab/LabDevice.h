// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDevice.h>

#include <QRect>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

/// With this value of the property "filter" there is no memory for frames.
constexpr int labFilterWithoutMemory = 6;
/// With this one the device deletes itself soon after its stream has started, as no plugin should.
constexpr int labFilterOfSelfDeletion = 7;

/// A camera as different from those of the simulated SDK as the contract allows: other ids, times
/// in seconds, gain in decibels, only plain properties, no trigger, and its own thread for frames.
class LabDevice : public PDevice {
    Q_OBJECT

public:
    explicit LabDevice(QObject* parent);
    ~LabDevice() override;

    QByteArray getModel() const override { return "Lab"; }
    QByteArray getSerial() const override { return "L7"; }
    bool isRealDevice() const override { return false; }
    bool isSupportStillCapture() const override { return true; }
    bool triggerStillCapture() override;
    PImage getSnapshot() override {
        triggerStillCapture();
        return {};
    }
    bool tryLink() override { return true; }
    bool tryUnlink() override { return true; }
    bool tryStartStream() override;
    bool tryStopStream() override;
    PDeviceMode getCurrentMode() override;
    bool trySetMode(const PDeviceMode& mode) override;
    QList<PDeviceMode> getSupportModes() override { return {getCurrentMode()}; }
    QList<PDeviceProperty*> getSupportProperties() override;
    QList<PDevicePropertyGroup*> getSupportPropertyGroups() override;

private:
    void produce();
    PImage frame();

    double m_shutter = 0.005; ///< seconds
    double m_amplification = 0;
    double m_heat = 21.5;
    bool m_selfTimed = false;
    QRect m_window{0, 0, 160, 120};
    std::atomic<int> m_join = 1;
    std::atomic<int> m_quarters = 0;
    std::atomic<int> m_filter = 3;

    std::mutex m_mutex; ///< guards the region and the thread's stop flag
    std::condition_variable m_ends;
    bool m_isEnding = false;
    std::thread m_thread;
};
