// SPDX-License-Identifier: MIT
#include <ways/WayArrival.h>

#include <gst/gst.h>

// A pipeline with the camera, for bench_ways. The plugin's file is the argument. GStreamer's other
// plugins are not looked for, which takes seconds.

namespace {

void reportArrival(GstElement*, GstBuffer*, GstPad*, gpointer) {
    WayArrival::report();
}

bool load(const char* file) {
    GError* error = nullptr;
    GstPlugin* const plugin = gst_plugin_load_file(file, &error);
    if (plugin == nullptr) {
        g_printerr("ways_gstreamer: %s\n", error->message);
        g_error_free(error);
        return false;
    }
    gst_object_unref(plugin);
    return true;
}

/// Waits for an error: the other process ends this one.
void waitForError(GstElement* pipeline) {
    GstBus* const bus = gst_element_get_bus(pipeline);
    GstMessage* const message = gst_bus_timed_pop_filtered(
        bus, GST_CLOCK_TIME_NONE, GstMessageType(GST_MESSAGE_ERROR | GST_MESSAGE_EOS));
    GError* error = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
        gst_message_parse_error(message, &error, nullptr);
    g_printerr("ways_gstreamer: %s\n", error != nullptr ? error->message : "the stream has ended");
    g_clear_error(&error);
    gst_message_unref(message);
    gst_object_unref(bus);
}

} // namespace

int main(int argc, char** argv) {
    gst_init(&argc, &argv);
    if (argc != 2 || !load(CORE_ELEMENTS) || !load(argv[1]))
        return 1;
    GstElement* const pipeline =
        gst_parse_launch("pcdsrc ! fakesink name=end sync=false signal-handoffs=true", nullptr);
    if (pipeline == nullptr)
        return 1;
    GstElement* const end = gst_bin_get_by_name(GST_BIN(pipeline), "end");
    g_signal_connect(end, "handoff", G_CALLBACK(reportArrival), nullptr);
    gst_object_unref(end);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    waitForError(pipeline);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return 1;
}
