// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/check/bench/PCheckCable.h>
#include <apps/pcdctl/check/bench/PCheckSettings.h>
#include <apps/pcdctl/check/bench/PCheckState.h>
#include <apps/pcdctl/check/bench/PFrameWatch.h>
#include <apps/pcdctl/check/bench/PHangWatch.h>
#include <apps/pcdctl/cli/PInterruptibleLoop.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>

#include <PCore/PStatus.h>

#include <QHash>
#include <QPointer>

#include <chrono>
#include <functional>
#include <memory>

class PDeviceProperty;
class PDeviceRegister;

/// The camera under examination: rules use it through this, which brings it into a state and back.
/// The main thread.
class PCheckBench : public QObject {
    Q_OBJECT

public:
    using Milliseconds = std::chrono::milliseconds;

    /// Waits this long for what the camera should do at once, exposure times not included. The
    /// watch learns from each use of the camera that the driver has returned.
    PCheckBench(PDeviceManager& manager, PDevice* device, PHangWatch& watch, Milliseconds timeout);
    /// Closes.
    ~PCheckBench() override;

    /// Links the camera, and takes its settings and modes. Fails if these could not be set back.
    PStatus open();
    /// Unlinks the camera if it is there.
    void close();
    /// How link() ended, and how long it took.
    const PStatus& linked() const { return m_linked; }
    Milliseconds linkTook() const { return m_linkTook; }

    /// The modes that the camera had at first.
    const QList<PDeviceMode>& modes() const { return m_modes; }
    const PCheckSettings& settings() const { return m_settings; }

    /// How the camera is unplugged; at first by its register or the user.
    void setCable(const PCheckCable& cable) { m_cable = cable; }
    const PCheckCable& cable() const { return m_cable; }

    bool isPresent() const { return m_device != nullptr; }
    /// Throws std::runtime_error, which ends the case, if the camera is gone.
    PDevice& device() const;
    PDeviceRegister& deviceRegister() const;
    const QList<PDeviceProperty*>& properties() const { return device().supportProperties(); }
    /// After the camera was removed and found again.
    void replaceDevice(PDevice* device);

    /// The property that a case is about; only for rules about each property.
    PDeviceProperty& property() const;
    void chooseProperty(qsizetype index) { m_property = index; }

    /// Brings the camera into a state. Between two states the settings are set back.
    PStatus enter(const PCheckState& state);
    const PCheckState& state() const { return m_state; }
    /// Stops the stream, and sets mode and settings back. A camera that is gone is left alone.
    void putBack();

    /// Starts the stream if it is not running, and waits for its first frame. After the first
    /// failure it fails at once.
    PStatus ensureStream();
    /// Stops the stream, if there is one, and waits for frames on their way.
    void stopStream();
    const std::shared_ptr<PFrameWatch>& frames() const { return m_frames; }
    /// Waits for this number of further live frames.
    bool waitForFrames(quint64 count);

    /// Runs events until the predicate is true. False on a timeout, if the user interrupts, or if
    /// the camera is gone.
    bool waitFor(const std::function<bool()>& predicate, Milliseconds atMost);
    /// The same, also while the camera is gone.
    bool waitAnyway(const std::function<bool()>& predicate, Milliseconds atMost);
    /// Runs events for this time.
    void wait(Milliseconds time);
    /// Calls the driver where an exception must not get further, as in a destructor; see
    /// takeProblem().
    void attempt(const std::function<void()>& call);
    /// Why an attempt, also one of stopping, putting back or closing, ended early; empty if none
    /// did since the last call of this function.
    QString takeProblem();

    /// Tells the watch that the driver is not in a call now: where a rule makes many, or waits
    /// without the functions above.
    void touch() const { m_watch.touch(); }

    /// How long to wait for a frame with the present exposure time.
    Milliseconds frameTimeout() const;
    Milliseconds timeout() const { return m_timeout; }
    bool isInterrupted() const { return m_loop.isInterrupted(); }

    /// True if the camera sets this property itself now, as with automatic exposure.
    bool isDriven(const PDeviceProperty& property) const;
    /// True if the property has a zero, the first choice or nothing, and nothing that is sent
    /// changes that. Drivers offer all settings for all models; a camera that lacks one has this
    /// instead.
    bool isInert(PDeviceProperty& property);
    /// True if a case may set this property in the present state, compare what it then has, and set
    /// it back. In a stream, long exposure times would hold up all that follows.
    bool maySet(PDeviceProperty& property);

private:
    PStatus startStream();

    QPointer<PDevice> m_device;
    PHangWatch& m_watch;
    const Milliseconds m_timeout;
    const std::shared_ptr<PFrameWatch> m_frames = std::make_shared<PFrameWatch>();
    PInterruptibleLoop m_loop;
    PStatus m_linked;
    Milliseconds m_linkTook{0};
    QList<PDeviceMode> m_modes;
    PCheckSettings m_settings;
    PCheckState m_state;
    QString m_problem;
    qsizetype m_property = 0;
    PCheckCable m_cable;
    QHash<const PDeviceProperty*, bool> m_inert; ///< those that have been tried
    PStatus m_stream;                            ///< the first failure to get frames
};
