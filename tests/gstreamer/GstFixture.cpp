// SPDX-License-Identifier: MIT
#include <gstreamer/GstFixture.h>

#include <gstreamer/PGstPlugin.h>
#include <gstreamer/camera/PGstHost.h>
#include <gstreamer/camera/PQtLoop.h>

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <stdexcept>

namespace {

const char* const camera = R"({"id": "%1", "model": "Simulated-T", "serial": "%2", "bits": %3,
    "flags": [%4"USB30", "TRIGGER_SOFTWARE"], "speedLevels": 4, "source": {"kind": "patches"},
    "resolutions": [{"width": 64, "height": 48, "fps": 200}, {"width": 32, "height": 24, "fps": 200}]})";

void startGStreamer() {
    static const bool isStarted = [] {
        gst_init(nullptr, nullptr);
        const GstPtr<GstPlugin> core(gst_plugin_load_file(CORE_ELEMENTS, nullptr));
        return core != nullptr &&
               gst_plugin_register_static(GST_VERSION_MAJOR, GST_VERSION_MINOR, "pcd", "test",
                                          PGstPlugin::registerFeatures, "0", "MIT/X11", "pcd",
                                          "pcd", "pcd") != FALSE;
    }();
    if (!isStarted)
        throw std::runtime_error("GStreamer does not start");
}

/// Waits with events, if this is Qt's thread.
template <typename Predicate>
bool waitFor(Predicate predicate) {
    const QCoreApplication* const application = QCoreApplication::instance();
    if (application != nullptr && application->thread() == QThread::currentThread())
        return waitUntil(predicate);
    const auto end = std::chrono::steady_clock::now() + longestWait();
    while (!predicate()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        g_usleep(1000);
    }
    return true;
}

} // namespace

GstRun::GstRun(const std::string& text) {
    GError* error = nullptr;
    m_pipeline.reset(gst_parse_launch(text.c_str(), &error));
    if (error != nullptr)
        throw std::runtime_error(error->message);
    m_source.reset(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), "src"));
    m_sink.reset(gst_bin_get_by_name(GST_BIN(m_pipeline.get()), "sink"));
    m_bus.reset(gst_element_get_bus(m_pipeline.get()));
    g_object_set(m_sink.get(), "signal-handoffs", TRUE, nullptr);
    g_signal_connect(m_sink.get(), "handoff", G_CALLBACK(take), this);
}

GstRun::~GstRun() {
    setState(GST_STATE_NULL);
}

void GstRun::take(GstElement*, GstBuffer* buffer, GstPad*, GstRun* run) {
    const std::lock_guard lock(run->m_mutex);
    run->m_buffers.emplace_back(gst_buffer_ref(buffer));
}

GstStateChangeReturn GstRun::setState(GstState state) {
    return gst_element_set_state(m_pipeline.get(), state);
}

GstPtr<GstMessage> GstRun::message(GstMessageType types) {
    GstPtr<GstMessage> found;
    waitFor([&] {
        found.reset(gst_bus_pop_filtered(m_bus.get(), types));
        return found != nullptr;
    });
    return found;
}

std::string GstRun::error() {
    const GstPtr<GstMessage> found = message(GST_MESSAGE_ERROR);
    if (!found)
        return {};
    GError* error = nullptr;
    gst_message_parse_error(found.get(), &error, nullptr);
    std::string text = error->message;
    g_error_free(error);
    return text;
}

GstPtr<GstMessage> GstRun::elementMessage(const char* name) {
    for (;;) {
        GstPtr<GstMessage> found = message(GST_MESSAGE_ELEMENT);
        if (!found || gst_message_has_name(found.get(), name) != FALSE)
            return found;
    }
}

bool GstRun::waitForBuffers(std::size_t count) {
    return waitFor([&] { return buffers().size() >= count; });
}

std::vector<GstBuffer*> GstRun::buffers() const {
    const std::lock_guard lock(m_mutex);
    std::vector<GstBuffer*> all;
    for (const GstPtr<GstBuffer>& buffer : m_buffers)
        all.push_back(buffer.get());
    return all;
}

std::string GstRun::caps() const {
    const GstPtr<GstPad> pad(gst_element_get_static_pad(m_source.get(), "src"));
    const GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad.get()));
    if (!caps)
        return {};
    char* const text = gst_caps_to_string(caps.get());
    std::string result = text;
    g_free(text);
    return result;
}

std::string GstRun::text(const char* property) const {
    char* text = nullptr;
    g_object_get(m_source.get(), property, &text, nullptr);
    std::string result = text;
    g_free(text);
    return result;
}

guint64 GstRun::number(const char* property) const {
    guint64 number = 0;
    g_object_get(m_source.get(), property, &number, nullptr);
    return number;
}

GstFixture::GstFixture() {
    startGStreamer();
}

GstFixture::~GstFixture() {
    // The next test has another scene.
    PQtLoop::call([] { PGstHost::instance().close(); });
    ToupcamSim_reset();
}

QString GstFixture::scene(const char* faults) {
    const QString form = QString::fromLatin1(camera);
    const QString text = u"{\"cameras\": [%1, %2], \"faults\": %3}"_qs.arg(
        form.arg(u"one"_qs, u"T1"_qs, u"24"_qs, QString()),
        form.arg(u"two"_qs, u"T2"_qs, u"8"_qs, u"\"MONO\", "_qs), QString::fromLatin1(faults));
    const QString path = m_folder.filePath(u"scene.json"_qs);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
        throw std::runtime_error("no scene");
    return path;
}

std::string GstFixture::source(const std::string& more) {
    return "pcdsrc name=src sdk=sim scene=" + scene().toStdString() + ' ' + more;
}

std::string GstFixture::pipeline(const std::string& more) {
    return source(more) + " ! fakesink name=sink";
}

PGstOptions GstFixture::options() {
    PGstOptions options;
    options.sdk = u"sim"_qs;
    options.scene = scene();
    return options;
}
