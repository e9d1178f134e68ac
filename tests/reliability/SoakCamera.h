// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceManager.h>
#include <PCd/frame/PFrameLedger.h>

#include <QObject>
#include <QPointer>
#include <QStringList>

class PDevice;

/// A program that uses one simulated camera for very long: plugs it in and out, starts and stops
/// its stream, takes frames as fast as they come. The main thread.
class SoakCamera : public QObject {
public:
    /// What it has done so far.
    struct Counts {
        qint64 replugs = 0;
        qint64 starts = 0;
        quint64 frames = 0;  ///< all that the camera pushed
        PFrameLedger ledger; ///< the sum of those of all devices
    };

    SoakCamera();
    ~SoakCamera() override;

    /// Each does its thing this number of times, and waits for what must come of it.
    void replug(int times);
    void startAndStop(int times);
    void takeFrames(quint64 frames);
    /// Everything that waits is done: only then is the state of the process the same each time.
    void settle();

    const Counts& counts() const { return m_counts; }
    /// What went wrong, in words: a camera that did not come, a ledger that does not balance.
    const QStringList& complaints() const { return m_complaints; }
    /// Counts a frame that was not there, to see that this is detected.
    static void miscount();

private:
    bool require(bool isMet, const QString& what);
    bool start();
    void stop();
    void onDeviceAdded(PDevice* device);
    void closeLedger(const PDevice* device);

    std::unique_ptr<PDeviceManager> m_manager;
    QPointer<PDevice> m_device;
    quint64 m_shown = 0;
    quint64 m_callbacksBefore = 0; ///< before this device
    Counts m_counts;
    QStringList m_complaints;
};
