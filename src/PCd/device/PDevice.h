// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PCdTypes.h>
#include <PCd/frame/PDeviceFrame.h>
#include <PCd/frame/PDeviceMode.h>
#include <PCd/frame/PFrameLedger.h>
#include <PCd/frame/PFrameSink.h>
#include <PCd/frame/PImageSource.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QByteArray>
#include <QList>

#include <memory>
#include <optional>

class PAbstractReader;
class PAbstractWriter;
class PDeviceProperty;
class PDeviceIdClaim;
class PDevicePropertyGroup;
class PFramePipeline;
class QWidget;

/// One camera as the host sees it. A plugin derives from it and implements the try… and get…
/// functions; the host calls link(), startStream() and the like, which keep the state and call
/// them.
///
/// Threads: everything runs on the thread that owns the object, the device's thread, unless it says
/// "any thread". Lifetime: created by a register, linked, streamed, unlinked, and deleted by the
/// register.
class PCD_EXPORT PDevice : public PImageSource {
    Q_OBJECT

public:
    explicit PDevice(QObject* parent);
    ~PDevice() override;

    // ---- Description of the device, and functions that a plugin overrides. Their order is part of
    // the ---- binary interface: add at the end only.

    /// Model name for the user.
    virtual QString model() const;
    /// Serial number for the user, without padding zeros; empty if unknown.
    virtual QString serial() const;
    /// Restores the settings that writeStreamThis() wrote, from the reader's current object: the
    /// mode, then the properties. False if any of them could not be set.
    virtual bool readStreamThis(PAbstractReader* reader);
    /// Writes model, serial, mode and all serialisable properties as an object of this name. False
    /// if any of them could not be read or written.
    virtual bool writeStreamThis(PAbstractWriter* writer, const QString& name);
    virtual bool isSupportSoftwareTrigger();
    /// True for a camera on a network.
    virtual bool isGigE();
    virtual bool isLinked() const;
    /// True once the property list has been built.
    virtual bool isInitialized() const;
    virtual bool isStreaming() const;
    /// False for a virtual device of the host, such as a file played back.
    virtual bool isRealDevice() const;
    /// A new panel of all properties, or null without a widget factory (see PWidgetFactory).
    virtual QWidget* createPropertiesWidget(QWidget* parent);
    /// True if images come as a sequence that ends on its own.
    virtual bool isSequence() const;
    /// True for a still camera without a live stream.
    virtual bool isPhotoDevice() const;
    virtual bool isSupportStillCapture() const;
    /// True if the host may process the images (see setProcessImage()).
    virtual bool canProcessImage() const;
    /// True if the other is the same camera: same model and serial.
    virtual bool isEqualSessionInfo(const PDevice* other) const;
    /// A still, or an empty image if it arrives later (DeviceOption::AsynchronousStill).
    virtual PImage getSnapshot();
    /// True if a histogram of the images makes sense.
    virtual bool enableHistogram() const;
    /// Requests a still, which arrives through processSnapshot(). False if refused.
    virtual bool triggerStillCapture();
    /// Model and serial number as stored in the device. Any thread.
    virtual QByteArray getModel() const = 0;
    virtual QByteArray getSerial() const = 0;
    virtual bool tryLink() = 0;
    virtual bool tryUnlink() = 0;
    virtual bool tryStartStream() = 0;
    /// After it returns, processFrameImage() receives no more frames of the stream.
    virtual bool tryStopStream() = 0;
    virtual PDeviceMode getCurrentMode() = 0;
    virtual bool trySetMode(const PDeviceMode& mode) = 0;
    virtual QList<PDeviceMode> getSupportModes() = 0;
    /// New property objects; the caller owns them.
    virtual QList<PDeviceProperty*> getSupportProperties() = 0;
    /// New groups of the properties that the device now owns; the caller owns the groups.
    virtual QList<PDevicePropertyGroup*> getSupportPropertyGroups() = 0;
    virtual bool tryFireSoftwareTrigger();
    virtual bool tryPollForTriggerReady();

    // ---- Functions for the host.

    /// Readable, stable id: model and serial, with "#2", "#3" … after it while another device that
    /// is present has the same; with `withRegister` the register's id and "/" before it, once a
    /// register has it. Fixed by the first call, which must come when the object is built. Any
    /// thread.
    QByteArray deviceId(bool withRegister) const;

    /// Each fails with a reason in plain words: the device is gone, is in the wrong state, or
    /// refused.
    PStatus link();
    PStatus unlink();
    PStatus startStream();
    /// Tried again by each startStream() until the device no longer refuses.
    PStatus stopStream();
    /// Sets the mode, also while streaming, and emits modeChanged() with the device's mode
    /// afterwards, an empty one if the device does not report it (PReadWatch).
    PStatus setMode(const PDeviceMode& mode);

    /// True once the register has removed the device: after that only stopping succeeds.
    bool isGone() const { return m_gone; }
    /// False if the device had modes when its register added it and reports none now, or if it
    /// reports none because it does not answer (PReadWatch). This is the case after its camera was
    /// unplugged, even if it has been plugged in again.
    bool isAnswering();
    /// Reads the mode; an empty one if the device has none, or does not report it (PReadWatch).
    PDeviceMode reportedMode();
    /// Reads all modes into `modes`. Fails, and leaves them empty, if the device does not report
    /// them (PReadWatch).
    PStatus readModes(QList<PDeviceMode>& modes);

    /// The property with this id, or null. Does not build the list. While the list exists, other
    /// threads may use the result to post calls to the property, and for nothing else.
    PDeviceProperty* getProperty(const QByteArray& id) const;
    /// The properties, owned by the device; the first call builds the list, reads each property's
    /// range and value once, and writes nothing to the device. A property that the device does not
    /// report (PReadWatch) is unread.
    const QList<PDeviceProperty*>& supportProperties();
    /// The groups, owned by the device, built by the first call.
    const QList<PDevicePropertyGroup*>& supportPropertyGroups();

    void setProcessImage(bool process) { m_processImage = process; }
    /// What the device can do, for hosts to read. Its plugin sets the options when it makes the
    /// device; none is set at first.
    void setDeviceOption(PCD::DeviceOption option, bool on);
    bool hasDeviceOption(PCD::DeviceOption option) const;

    // ---- Frames.

    /// Passes a live frame to the host: it is stamped, counted, given to the frame sinks on this
    /// thread, and queued for the device's thread, where imageChanged() is emitted. Any thread;
    /// never waits for the device's thread, and never throws.
    void processFrameImage(const PImage& image) noexcept;
    /// Passes a frame to the host as a snapshot, through the same pipeline; snapshotTaken() is
    /// emitted. A frame without a stamp is new; one with a stamp has been counted before and is not
    /// counted again.
    void processSnapshot(PDeviceFrame frame) noexcept;
    /// Counts frames that never became an image. Any thread.
    void reportDroppedFrames(PFrameOutcome outcome, quint64 count = 1);

    /// Adds a sink that receives every frame until it is removed. Any thread.
    void addFrameSink(std::shared_ptr<PFrameSink> sink);
    /// When this returns, no takeFrame() of the sink is running. Not from inside takeFrame().
    void removeFrameSink(const std::shared_ptr<PFrameSink>& sink);

    /// Accepts this number of live frames; later ones are counted as not requested and dropped.
    /// Without a number, all are accepted, which is the default. Any thread.
    void limitLiveFrames(std::optional<quint64> count);

    /// The newest live frame that arrived, regardless of the queue; a view shows this. Any thread.
    PDeviceFrame newestFrame() const;
    /// A consistent ledger of all frames so far. Any thread.
    PFrameLedger frameLedger() const;
    /// For hosts: bytes of live frames that may wait for delivery (2 GiB unless set). Any thread.
    void setFrameByteLimit(std::size_t bytes);
    static constexpr std::size_t defaultFrameByteLimit = std::size_t(2) << 30;

signals:
    /// setMode() applied this mode.
    void modeChanged(PDeviceMode mode);
    /// The device was unlinked; the argument is deviceId(false).
    void unlinked(QByteArray id);
    /// A snapshot arrived, on the device's thread.
    void snapshotTaken(PDeviceFrame frame);

private:
    friend class PDeviceRegister; // retires the device and gives it its m_registerId

    void takeProperties();
    void updateMode();
    void updateSettings();
    void retire();

    QByteArray m_registerId;
    PDeviceMode m_mode; ///< stamped on frames
    QList<PDeviceProperty*> m_properties;
    QList<PDevicePropertyGroup*> m_groups;
    int m_options = 0;
    bool m_processImage = false;
    bool m_linked = false;
    bool m_streaming = false;
    bool m_gone = false;
    bool m_hadModes = false;
    bool m_propertiesTaken = false;
    bool m_groupsTaken = false;
    bool m_stopRefused = false; ///< by the device, which may still stream
    std::unique_ptr<PDeviceIdClaim> m_idClaim;
    std::unique_ptr<PFramePipeline> m_frames;
};
