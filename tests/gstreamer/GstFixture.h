// SPDX-License-Identifier: MIT
#pragma once

#include <gstreamer/PcdSrc.h>
#include <gstreamer/camera/PGstOptions.h>

#include <support/WaitUntil.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <QString>
#include <QTemporaryDir>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// The plugin holds each camera that is present open; elements open no others.
constexpr unsigned presentCameras = 2;

/// Releases an object of GStreamer.
struct GstRelease {
    void operator()(gpointer object) const { gst_object_unref(object); }
    void operator()(GstMessage* message) const { gst_message_unref(message); }
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
};
template <typename T>
using GstPtr = std::unique_ptr<T, GstRelease>;

/// A pipeline from pcdsrc to a fakesink, and what came of it.
class GstRun {
public:
    /// The text is what gst-launch-1.0 takes, with pcdsrc named "src" and a fakesink named "sink".
    explicit GstRun(const std::string& text);
    /// To NULL.
    ~GstRun();

    GstStateChangeReturn setState(GstState state);
    GstElement* source() const { return m_source.get(); }
    GstElement* pipeline() const { return m_pipeline.get(); }
    GstBus* bus() const { return m_bus.get(); }

    /// The next message of these types; null if none comes.
    GstPtr<GstMessage> message(GstMessageType types);
    /// The text of the next error; empty if there is none.
    std::string error();
    /// The next message of an element with this name of its structure; null if none comes.
    GstPtr<GstMessage> elementMessage(const char* name);

    /// Waits for this number of buffers; false if they do not come.
    bool waitForBuffers(std::size_t count);
    /// Those that came.
    std::vector<GstBuffer*> buffers() const;
    /// The caps of the newest frame as a text.
    std::string caps() const;

    /// A property of pcdsrc.
    std::string text(const char* property) const;
    guint64 number(const char* property) const;

private:
    static void take(GstElement* sink, GstBuffer* buffer, GstPad* pad, GstRun* run);

    GstPtr<GstElement> m_pipeline;
    GstPtr<GstElement> m_source;
    GstPtr<GstElement> m_sink;
    GstPtr<GstBus> m_bus;
    mutable std::mutex m_mutex; ///< guards the buffers, which the streaming thread adds
    std::vector<GstPtr<GstBuffer>> m_buffers;
};

/// GStreamer with the plugin, and simulated cameras of a scene. Works with and without an
/// application of Qt.
class GstFixture : public testing::Test {
protected:
    GstFixture();
    ~GstFixture() override;

    /// Two cameras of 64x48 pixels, "Simulated-T-T1" and the grey "Simulated-T-T2", SDK ids "one"
    /// and "two"; `faults` is a JSON list.
    QString scene(const char* faults = "[]");
    /// "pcdsrc name=src sdk=sim scene=FILE " + more.
    std::string source(const std::string& more = {});
    /// The same with " ! fakesink name=sink".
    std::string pipeline(const std::string& more = {});
    /// The same for PGstCamera.
    PGstOptions options();

private:
    QTemporaryDir m_folder;
};
