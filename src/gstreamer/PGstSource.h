// SPDX-License-Identifier: MIT
#pragma once

#include <gstreamer/camera/PGstCamera.h>
#include <gstreamer/camera/PGstCatalogue.h>
#include <gstreamer/frame/PGstTimes.h>

#include <gst/base/gstpushsrc.h>

#include <functional>
#include <memory>
#include <mutex>

/// What the element `pcdsrc` does, apart from what GObject needs. State changes come from any
/// thread, frames are taken on the streaming thread. Only state changes and trigger() wait for Qt's
/// thread, with a timeout; the streaming thread never does. Qt's thread never waits for GStreamer.
class PGstSource {
public:
    /// The most frames of queue-size.
    static constexpr unsigned mostFrames = 64;

    explicit PGstSource(GstPushSrc* element);

    /// The properties. Any thread. A change takes effect when the element is next opened, except
    /// for setSettings().
    PGstOptions options() const;
    /// Changes some of them, all at once.
    void change(const std::function<void(PGstOptions&)>& change);
    /// Settings of the camera; while it is open, they are applied without waiting for that.
    void setSettings(const QString& settings);
    /// Applies more settings to the camera that is open, without waiting; those that it does not
    /// take are a warning on the bus. They hold until it is closed.
    void apply(const QString& settings);
    /// The value of a setting, as the camera has it now; empty without a camera, or if it does not
    /// answer within a second.
    std::optional<QString> settingValue(const QByteArray& id) const;
    /// What the open camera can be set to; one child of the element for each.
    QList<PGstCatalogue::Entry> settings() const;
    /// The most frames that may wait for the pipeline.
    void setQueueSize(unsigned frames);
    unsigned queueSize() const;
    /// The id of the camera that is open; else empty.
    QString cameraId() const;
    /// What has happened to the frames since the start.
    PGstFrameQueue::Counts counts() const { return m_queue->counts(); }

    /// From NULL to READY: opens the camera. False with an error message on the bus, as for the
    /// next two.
    bool open();
    /// From READY to PAUSED: chooses the mode that the pipeline takes.
    bool negotiateMode();
    /// From PAUSED to PLAYING: starts the stream.
    bool play();
    /// From PLAYING to PAUSED.
    void pause();
    /// From READY to NULL.
    void close();

    /// Fires software triggers, see PGstCamera::fire(); false with a warning on the bus if the
    /// camera refuses, or none is open. Any thread.
    bool trigger(int frames);

    /// What the camera can send. The caller owns it. Any thread.
    GstCaps* makeCaps() const;
    /// Waits for the next frame. The streaming thread.
    GstFlowReturn create(GstBuffer** buffer);
    /// Makes create() return, and lets it wait again. Any thread.
    void setFlushing(bool flushing) { m_queue->setFlushing(flushing); }
    /// The answer to a latency query. Any thread.
    void latency(GstClockTime& least, GstClockTime& most) const;

private:
    bool fail(const PGstCamera::Outcome& outcome);
    bool failedUnless(const std::optional<PStatus>& status, const char* what);
    std::shared_ptr<PGstCamera> camera() const;
    PGstOptions::OnUnplug onUnplug() const;
    bool hasSettings() const;
    GstFlowReturn pass(const PGstFrameQueue::Item& item, GstBuffer** buffer);
    std::optional<GstFlowReturn> handle(const PGstFrameQueue::Item& item);
    std::optional<GstFlowReturn> unplugged(const QString& text);
    bool setCaps(const PImageHeader& header);
    void stamp(GstBuffer* buffer, const PGstFrameQueue::Item& item);
    void reportDropped(GstBuffer* buffer, quint64 count);
    void post(const char* name, const QString& text);

    GstPushSrc* const m_element;
    const std::shared_ptr<PGstFrameQueue> m_queue;
    PGstTimes m_times;

    mutable std::mutex m_mutex; ///< guards all below, between state changes and properties
    PGstOptions m_options;
    unsigned m_queueSize = 4;
    std::shared_ptr<PGstCamera> m_camera;                            ///< deleted on Qt's thread
    PGstOptions::OnUnplug m_onUnplug = PGstOptions::OnUnplug::Error; ///< since it was opened
    bool m_hasSettings = false; ///< since it was opened; a region may have any size
    QString m_cameraId;
    QList<PDeviceMode> m_modes;
    PGstCatalogue m_catalogue;

    PImageHeader m_header; ///< of the present caps; the streaming thread
    bool m_isFirst = true; ///< frame since the start; the streaming thread
    bool m_hasLatency = false;
};
