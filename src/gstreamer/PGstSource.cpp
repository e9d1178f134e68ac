// SPDX-License-Identifier: MIT
#include <gstreamer/PGstSource.h>

#include <gstreamer/camera/PGstSettings.h>
#include <gstreamer/camera/PQtLoop.h>
#include <gstreamer/frame/PGstBuffer.h>
#include <gstreamer/frame/PGstCaps.h>

#include <PCore/PPrintableText.h>

#include <algorithm>
#include <utility>

namespace {

using Item = PGstFrameQueue::Item;
using Outcome = PGstCamera::Outcome;

QByteArray toUtf8Line(const QString& text) {
    return PPrintableText::toLine(text).toUtf8();
}

/// What open() brings back from Qt's thread.
struct Opened {
    Outcome outcome;
    QString id;
    QString note;
    QList<PDeviceMode> modes;
    PGstCatalogue catalogue;
};

Opened openCamera(PGstCamera& camera, const PGstOptions& options) {
    Opened opened{camera.open(options), camera.id(), {}, {}, {}};
    if (opened.outcome.code == Outcome::Code::Done) {
        opened.note = camera.note();
        opened.modes = camera.modes();
        opened.catalogue = camera.catalogue();
    }
    return opened;
}

} // namespace

PGstSource::PGstSource(GstPushSrc* element)
    : m_element(element)
    , m_queue(std::make_shared<PGstFrameQueue>()) {
}

PGstOptions PGstSource::options() const {
    const std::lock_guard lock(m_mutex);
    return m_options;
}

void PGstSource::change(const std::function<void(PGstOptions&)>& change) {
    const std::lock_guard lock(m_mutex);
    change(m_options);
}

void PGstSource::setSettings(const QString& settings) {
    {
        const std::lock_guard lock(m_mutex);
        m_options.settings = settings;
    }
    apply(settings);
}

void PGstSource::apply(const QString& settings) {
    std::shared_ptr<PGstCamera> camera;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_camera || settings.isEmpty())
            return;
        camera = m_camera;
        m_hasSettings = true;
    }
    // To Qt's thread, without waiting: properties are set from any thread, also from one for which
    // Qt's thread waits. What was not applied is reported by the streaming thread.
    PQtLoop::post([camera, queue = m_queue, settings] {
        const PStatus status = camera->apply(settings);
        if (!status.isOk())
            queue->report(Item::Kind::Warning, status.reason());
    });
}

std::optional<QString> PGstSource::settingValue(const QByteArray& id) const {
    const auto camera = this->camera();
    if (!camera)
        return std::nullopt;
    const auto value = PQtLoop::ask<std::optional<QString>>(
        [camera, id] { return camera->value(id); }, std::chrono::seconds(1));
    return value ? *value : std::nullopt;
}

QList<PGstCatalogue::Entry> PGstSource::settings() const {
    const std::lock_guard lock(m_mutex);
    return m_catalogue.entries;
}

void PGstSource::setQueueSize(unsigned frames) {
    const std::lock_guard lock(m_mutex);
    m_queueSize = std::clamp(frames, 1U, mostFrames);
    m_queue->setCapacity(m_queueSize);
}

unsigned PGstSource::queueSize() const {
    const std::lock_guard lock(m_mutex);
    return m_queueSize;
}

QString PGstSource::cameraId() const {
    const std::lock_guard lock(m_mutex);
    return m_cameraId;
}

std::shared_ptr<PGstCamera> PGstSource::camera() const {
    const std::lock_guard lock(m_mutex);
    return m_camera;
}

PGstOptions::OnUnplug PGstSource::onUnplug() const {
    const std::lock_guard lock(m_mutex);
    return m_onUnplug;
}

bool PGstSource::hasSettings() const {
    const std::lock_guard lock(m_mutex);
    return m_hasSettings;
}

bool PGstSource::open() {
    // The camera is a QObject of Qt's thread, and is deleted there: without waiting, because its
    // last user may be any thread.
    const auto deleteThere = [](PGstCamera* camera) { PQtLoop::post([camera] { delete camera; }); };
    const PGstOptions options = this->options();
    m_queue->clear(); // of a camera that was unplugged while it was opened
    using Made = std::pair<std::shared_ptr<PGstCamera>, Opened>;
    const auto made = PQtLoop::ask<Made>([options, queue = m_queue, deleteThere] {
        Made result{{new PGstCamera(queue), deleteThere}, {}};
        result.second = openCamera(*result.first, options);
        return result;
    });
    if (!made)
        return fail({Outcome::Code::Failed,
                     u"the camera did not answer while it was opened, or the "
                     "program's Qt event loop does not run"_qs});
    const Opened& opened = made->second;
    if (opened.outcome.code != Outcome::Code::Done)
        return fail(opened.outcome);
    if (!opened.note.isEmpty())
        GST_ELEMENT_INFO(m_element, RESOURCE, SETTINGS, ("%s", toUtf8Line(opened.note).constData()),
                         (nullptr));
    const std::lock_guard lock(m_mutex);
    m_camera = made->first;
    m_onUnplug = options.onUnplug;
    m_hasSettings = !options.settings.isEmpty();
    m_cameraId = opened.id;
    m_modes = opened.modes;
    m_catalogue = opened.catalogue;
    return true;
}

bool PGstSource::fail(const Outcome& outcome) {
    const QByteArray text = toUtf8Line(outcome.reason);
    switch (outcome.code) {
    case Outcome::Code::Done:
        return true;
    case Outcome::Code::NotFound:
        GST_ELEMENT_ERROR(m_element, RESOURCE, NOT_FOUND, ("%s", text.constData()), (nullptr));
        break;
    case Outcome::Code::Busy:
        GST_ELEMENT_ERROR(m_element, RESOURCE, BUSY, ("%s", text.constData()), (nullptr));
        break;
    case Outcome::Code::WrongSettings:
        GST_ELEMENT_ERROR(m_element, RESOURCE, SETTINGS, ("%s", text.constData()), (nullptr));
        break;
    case Outcome::Code::Failed:
        GST_ELEMENT_ERROR(m_element, RESOURCE, OPEN_READ, ("%s", text.constData()), (nullptr));
        break;
    }
    return false;
}

bool PGstSource::failedUnless(const std::optional<PStatus>& status, const char* what) {
    if (!status)
        return fail({Outcome::Code::Failed, u"camera %1 did not answer while %2"_qs.arg(
                                                cameraId(), QString::fromLatin1(what))});
    return status->isOk() || fail({Outcome::Code::Failed, status->reason()});
}

bool PGstSource::negotiateMode() {
    GstPad* const pad = GST_BASE_SRC_PAD(m_element);
    GstCaps* const own = makeCaps();
    GstCaps* const taken = gst_pad_peer_query_caps(pad, own);
    const QString expected = PGstCaps::toText(own);
    const auto changed = PQtLoop::ask<std::optional<PStatus>>(
        [camera = camera(), taken = std::shared_ptr<GstCaps>(taken, gst_caps_unref),
         isAnySize = hasSettings()]() {
            if (!camera->isPresent())
                return std::optional(camera->checkPlugged());
            const PDeviceMode present = camera->mode();
            const PDeviceMode mode = PGstCaps::choose(taken.get(), camera->modes(), present);
            if (mode.width == 0) // then the first frame decides, if settings may change its size
                return isAnySize ? std::optional(PStatus(PStatus::Ok)) : std::nullopt;
            return std::optional(mode == present ? PStatus(PStatus::Ok) : camera->setMode(mode));
        });
    gst_caps_unref(own);
    m_header = {};
    m_isFirst = true;
    if (changed && !*changed) {
        GST_ELEMENT_ERROR(m_element, STREAM, FORMAT,
                          ("camera %s has no mode that the pipeline takes: expected one of %s",
                           toUtf8Line(cameraId()).constData(), toUtf8Line(expected).constData()),
                          (nullptr));
        return false;
    }
    return failedUnless(changed ? *changed : std::nullopt, "its mode was set");
}

bool PGstSource::play() {
    m_times.reset();
    m_queue->begin();
    const auto started = PQtLoop::ask<PStatus>([camera = camera()] { return camera->start(); });
    return failedUnless(started, "its stream was started");
}

void PGstSource::pause() {
    // Frames that arrive while Qt's thread stops the camera are of no use.
    m_queue->end();
    const auto stopped = PQtLoop::ask<PStatus>([camera = camera()] { return camera->stop(); });
    if (!stopped || !stopped->isOk())
        GST_ELEMENT_WARNING(m_element, RESOURCE, FAILED,
                            ("camera %s did not stop: %s", toUtf8Line(cameraId()).constData(),
                             stopped ? toUtf8Line(stopped->reason()).constData() : "no answer"),
                            (nullptr));
}

void PGstSource::close() {
    std::shared_ptr<PGstCamera> camera;
    {
        const std::lock_guard lock(m_mutex);
        camera = std::exchange(m_camera, nullptr);
        m_cameraId.clear();
        m_modes.clear();
        m_catalogue.entries.clear();
    }
    // Waits, so that the next element can open the camera; a camera that hangs is left behind.
    if (camera)
        PQtLoop::call([camera] { camera->close(); });
    m_queue->clear(); // what happened to it does not concern the next one
}

bool PGstSource::trigger(int frames) {
    const auto camera = this->camera();
    if (!camera) {
        GST_ELEMENT_WARNING(m_element, RESOURCE, FAILED,
                            ("no camera is open to be triggered: expected the state READY, PAUSED "
                             "or PLAYING"),
                            (nullptr));
        return false;
    }
    const auto fired = PQtLoop::ask<PStatus>([camera, frames] { return camera->fire(frames); });
    if (fired && fired->isOk())
        return true;
    GST_ELEMENT_WARNING(m_element, RESOURCE, FAILED,
                        ("%s", fired ? toUtf8Line(fired->reason()).constData()
                                     : "the camera did not answer a trigger"),
                        (nullptr));
    return false;
}

GstCaps* PGstSource::makeCaps() const {
    const std::lock_guard lock(m_mutex);
    return m_hasSettings ? PGstCaps::makeTemplate() : PGstCaps::fromModes(m_modes);
}

GstFlowReturn PGstSource::create(GstBuffer** buffer) {
    for (;;) {
        const std::optional<Item> item = m_queue->take();
        if (!item)
            return GST_FLOW_FLUSHING;
        if (item->kind == Item::Kind::Frame)
            return pass(*item, buffer);
        const std::optional<GstFlowReturn> end = handle(*item);
        if (end)
            return *end;
    }
}

/// What the stream ends with, if it does.
std::optional<GstFlowReturn> PGstSource::handle(const Item& item) {
    const QByteArray text = toUtf8Line(item.text);
    switch (item.kind) {
    case Item::Kind::Frame:
        break;
    case Item::Kind::Unplugged:
        post("pcdsrc-unplugged", item.text);
        return unplugged(item.text);
    case Item::Kind::Plugged:
        m_isFirst = true;
        post("pcdsrc-plugged", item.text);
        break;
    case Item::Kind::Warning:
        GST_ELEMENT_WARNING(m_element, RESOURCE, SETTINGS, ("%s", text.constData()), (nullptr));
        break;
    case Item::Kind::Failed:
        GST_ELEMENT_ERROR(m_element, RESOURCE, READ, ("%s", text.constData()), (nullptr));
        return GST_FLOW_ERROR;
    }
    return std::nullopt;
}

std::optional<GstFlowReturn> PGstSource::unplugged(const QString& text) {
    switch (onUnplug()) {
    case PGstOptions::OnUnplug::Wait:
        return std::nullopt;
    case PGstOptions::OnUnplug::Eos:
        return GST_FLOW_EOS;
    case PGstOptions::OnUnplug::Error:
        break;
    }
    GST_ELEMENT_ERROR(m_element, RESOURCE, READ, ("%s", toUtf8Line(text).constData()), (nullptr));
    return GST_FLOW_ERROR;
}

GstFlowReturn PGstSource::pass(const Item& item, GstBuffer** buffer) {
    const PImageHeader header = item.frame.image.header();
    if (header != m_header && !setCaps(header))
        return GST_FLOW_NOT_NEGOTIATED;
    m_header = header;
    *buffer = PGstBuffer::wrap(item.frame.image);
    stamp(*buffer, item);
    if (item.dropped > 0)
        reportDropped(*buffer, item.dropped);
    // Only after some frames is it known how long the queue lasts.
    if (!m_hasLatency && m_times.interval()) {
        m_hasLatency = true;
        gst_element_post_message(GST_ELEMENT(m_element),
                                 gst_message_new_latency(GST_OBJECT(m_element)));
    }
    return GST_FLOW_OK;
}

bool PGstSource::setCaps(const PImageHeader& header) {
    GstCaps* const caps = PGstCaps::fromHeader(header);
    if (caps == nullptr) {
        GST_ELEMENT_ERROR(
            m_element, STREAM, FORMAT,
            ("the camera sends a frame that is no video of GStreamer: %ldx%ld, format %d",
             header.width(), header.height(), int(header.format())),
            (nullptr));
        return false;
    }
    GstCaps* const taken = gst_pad_peer_query_caps(GST_BASE_SRC_PAD(m_element), nullptr);
    const bool isTaken = gst_caps_can_intersect(caps, taken) != FALSE;
    if (isTaken)
        gst_base_src_set_caps(GST_BASE_SRC(m_element), caps);
    else
        GST_ELEMENT_ERROR(
            m_element, STREAM, FORMAT,
            ("the camera sends %s, but the pipeline takes %s: expected a videoconvert "
             "after pcdsrc, or other caps",
             PGstCaps::toText(caps).toUtf8().constData(),
             PGstCaps::toText(taken).toUtf8().constData()),
            (nullptr));
    gst_caps_unref(taken);
    gst_caps_unref(caps);
    return isTaken;
}

void PGstSource::stamp(GstBuffer* buffer, const Item& item) {
    const PFrameStamp& stamp = *item.frame.stamp;
    GstClock* const clock = gst_element_get_clock(GST_ELEMENT(m_element));
    if (clock != nullptr) {
        const GstClockTime now = gst_clock_get_time(clock);
        const GstClockTime base = gst_element_get_base_time(GST_ELEMENT(m_element));
        GST_BUFFER_PTS(buffer) = m_times.toRunningTime(
            stamp.arrived, stamp.sequence, PGstTimes::Clock::now(), now > base ? now - base : 0);
        gst_object_unref(clock);
    }
    GST_BUFFER_OFFSET(buffer) = stamp.sequence;
    GST_BUFFER_OFFSET_END(buffer) = stamp.sequence + 1;
    if (std::exchange(m_isFirst, false) || item.dropped > 0)
        GST_BUFFER_FLAG_SET(buffer, GST_BUFFER_FLAG_DISCONT);
}

/// As elements report what they drop: with the times of the frame, and both counts.
void PGstSource::reportDropped(GstBuffer* buffer, quint64 count) {
    const GstClockTime time = GST_BUFFER_PTS(buffer);
    GstMessage* const message =
        gst_message_new_qos(GST_OBJECT(m_element), TRUE, time, time, time, GST_CLOCK_TIME_NONE);
    const PGstFrameQueue::Counts counts = this->counts();
    gst_message_set_qos_stats(message, GST_FORMAT_BUFFERS, counts.delivered, counts.dropped);
    gst_element_post_message(GST_ELEMENT(m_element), message);
    GST_WARNING_OBJECT(m_element, "%" G_GUINT64_FORMAT " frames dropped: the pipeline is too slow",
                       guint64(count));
}

void PGstSource::post(const char* name, const QString& text) {
    GstStructure* const structure =
        gst_structure_new(name, "camera", G_TYPE_STRING, cameraId().toUtf8().constData(), "text",
                          G_TYPE_STRING, toUtf8Line(text).constData(), nullptr);
    gst_element_post_message(GST_ELEMENT(m_element),
                             gst_message_new_element(GST_OBJECT(m_element), structure));
}

void PGstSource::latency(GstClockTime& least, GstClockTime& most) const {
    // Frames are stamped when they arrive, so they need not be waited for; how late the last one in
    // the queue may be depends on the camera's rate.
    least = 0;
    const std::optional<GstClockTime> interval = m_times.interval();
    most = interval ? *interval * queueSize() : GST_CLOCK_TIME_NONE;
}
