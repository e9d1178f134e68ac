// SPDX-License-Identifier: MIT
#include <gstreamer/PcdSrc.h>

#include <gstreamer/PGstSource.h>
#include <gstreamer/PcdSetting.h>
#include <gstreamer/frame/PGstCaps.h>

static void pcd_src_child_proxy_init(gpointer type, gpointer);

G_DEFINE_TYPE_WITH_CODE(PcdSrc, pcd_src, GST_TYPE_PUSH_SRC,
                        G_IMPLEMENT_INTERFACE(GST_TYPE_CHILD_PROXY, pcd_src_child_proxy_init))

namespace {

enum Property : guint {
    NoProperty, // GObject counts from 1
    Camera,
    Sdk,
    Scene,
    Mode,
    Settings,
    Trigger,
    TriggerFrames,
    TriggerExposure,
    OnUnplug,
    QueueSize,
    CameraId,
    Delivered,
    Dropped,
    Stats,
};

PGstSource& toSource(gpointer object) {
    return *reinterpret_cast<PcdSrc*>(object)->source;
}

GType makeEnum(const char* name, const GEnumValue* values) {
    return g_enum_register_static(name, values);
}

GType triggerType() {
    static const GEnumValue values[] = {
        {int(PGstOptions::Trigger::None), "A live stream", "none"},
        {int(PGstOptions::Trigger::Software), "By trigger-frames and the action \"trigger\"",
         "software"},
        {int(PGstOptions::Trigger::External), "By signals at the camera's input", "external"},
        {0, nullptr, nullptr}};
    static const GType type = makeEnum("PcdSrcTrigger", values);
    return type;
}

GType onUnplugType() {
    static const GEnumValue values[] = {
        {int(PGstOptions::OnUnplug::Error), "An error ends the pipeline", "error"},
        {int(PGstOptions::OnUnplug::Eos), "The stream ends as planned", "eos"},
        {int(PGstOptions::OnUnplug::Wait), "Wait until it is plugged in again", "wait"},
        {0, nullptr, nullptr}};
    static const GType type = makeEnum("PcdSrcOnUnplug", values);
    return type;
}

QString toText(const GValue* value) {
    return QString::fromUtf8(g_value_get_string(value));
}

/// False if it is no option.
bool setOption(PGstOptions& options, guint id, const GValue* value) {
    switch (id) {
    case Camera:
        options.camera = toText(value);
        return true;
    case Sdk:
        options.sdk = toText(value);
        return true;
    case Scene:
        options.scene = toText(value);
        return true;
    case Mode:
        options.mode = toText(value);
        return true;
    case Trigger:
        options.trigger = PGstOptions::Trigger(g_value_get_enum(value));
        return true;
    case TriggerFrames:
        options.triggerFrames = g_value_get_int(value);
        return true;
    case TriggerExposure:
        options.triggerExposure = std::chrono::microseconds(g_value_get_uint(value));
        return true;
    case OnUnplug:
        options.onUnplug = PGstOptions::OnUnplug(g_value_get_enum(value));
        return true;
    default:
        return false;
    }
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* spec) {
    PGstSource& source = toSource(object);
    if (id == Settings)
        return source.setSettings(toText(value));
    if (id == QueueSize)
        return source.setQueueSize(g_value_get_uint(value));
    bool isOption = false;
    source.change([&](PGstOptions& options) { isOption = setOption(options, id, value); });
    if (!isOption)
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
}

GstStructure* makeStats(const PGstFrameQueue::Counts& counts) {
    return gst_structure_new("application/x-pcdsrc-stats", "arrived", G_TYPE_UINT64, counts.arrived,
                             "delivered", G_TYPE_UINT64, counts.delivered, "dropped", G_TYPE_UINT64,
                             counts.dropped, "discarded", G_TYPE_UINT64, counts.discarded,
                             "waiting", G_TYPE_UINT64, counts.waiting, nullptr);
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* spec) {
    const PGstSource& source = toSource(object);
    const PGstOptions options = source.options();
    const auto setText = [value](const QString& text) {
        g_value_set_string(value, text.toUtf8().constData());
    };
    switch (id) {
    case Camera:
        return setText(options.camera);
    case Sdk:
        return setText(options.sdk);
    case Scene:
        return setText(options.scene);
    case Mode:
        return setText(options.mode);
    case Settings:
        return setText(options.settings);
    case Trigger:
        return g_value_set_enum(value, int(options.trigger));
    case TriggerFrames:
        return g_value_set_int(value, options.triggerFrames);
    case TriggerExposure:
        return g_value_set_uint(value, guint(options.triggerExposure.count()));
    case OnUnplug:
        return g_value_set_enum(value, int(options.onUnplug));
    case QueueSize:
        return g_value_set_uint(value, source.queueSize());
    case CameraId:
        return setText(source.cameraId());
    case Delivered:
        return g_value_set_uint64(value, source.counts().delivered);
    case Dropped:
        return g_value_set_uint64(value, source.counts().dropped);
    case Stats:
        return g_value_take_boxed(value, makeStats(source.counts()));
    default:
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
    }
}

void finalize(GObject* object) {
    delete reinterpret_cast<PcdSrc*>(object)->source;
    G_OBJECT_CLASS(pcd_src_parent_class)->finalize(object);
}

/// The settings of the camera that was opened become children, without the lock: those that
/// are informed may use them.
void addChildren(PcdSrc* source) {
    for (const PGstCatalogue::Entry& entry : source->source->settings()) {
        auto* const child = reinterpret_cast<GstObject*>(pcd_setting_new(entry));
        GST_OBJECT_LOCK(source);
        source->children = g_list_append(source->children, child);
        GST_OBJECT_UNLOCK(source);
        gst_object_set_parent(child, GST_OBJECT(source)); // which takes the reference
        gst_child_proxy_child_added(GST_CHILD_PROXY(source), G_OBJECT(child), entry.id.constData());
    }
}

void removeChildren(PcdSrc* source) {
    GST_OBJECT_LOCK(source);
    GList* const children = source->children;
    source->children = nullptr;
    GST_OBJECT_UNLOCK(source);
    for (GList* one = children; one != nullptr; one = one->next) {
        auto* const child = GST_OBJECT(one->data);
        gst_child_proxy_child_removed(GST_CHILD_PROXY(source), G_OBJECT(child),
                                      GST_OBJECT_NAME(child));
        gst_object_unparent(child);
    }
    g_list_free(children);
}

guint countChildren(GstChildProxy* proxy) {
    GST_OBJECT_LOCK(proxy);
    const guint count = g_list_length(reinterpret_cast<PcdSrc*>(proxy)->children);
    GST_OBJECT_UNLOCK(proxy);
    return count;
}

GObject* findChild(GstChildProxy* proxy, guint index) {
    GST_OBJECT_LOCK(proxy);
    gpointer const child = g_list_nth_data(reinterpret_cast<PcdSrc*>(proxy)->children, index);
    if (child != nullptr)
        gst_object_ref(child);
    GST_OBJECT_UNLOCK(proxy);
    return static_cast<GObject*>(child);
}

/// The camera is opened and started before the parent changes the state, and stopped after it: then
/// the streaming thread no longer takes frames.
GstStateChangeReturn changeState(GstElement* element, GstStateChange change) {
    PGstSource& source = toSource(element);
    if (change == GST_STATE_CHANGE_NULL_TO_READY) {
        if (!source.open())
            return GST_STATE_CHANGE_FAILURE;
        addChildren(reinterpret_cast<PcdSrc*>(element));
    }
    // Not in start(): if that fails, the parent reports an error of its own besides.
    if (change == GST_STATE_CHANGE_READY_TO_PAUSED && !source.negotiateMode())
        return GST_STATE_CHANGE_FAILURE;
    if (change == GST_STATE_CHANGE_PAUSED_TO_PLAYING && !source.play())
        return GST_STATE_CHANGE_FAILURE;
    const GstStateChangeReturn result =
        GST_ELEMENT_CLASS(pcd_src_parent_class)->change_state(element, change);
    const bool hasFailed = result == GST_STATE_CHANGE_FAILURE;
    if (change == GST_STATE_CHANGE_PLAYING_TO_PAUSED ||
        (change == GST_STATE_CHANGE_PAUSED_TO_PLAYING && hasFailed))
        source.pause();
    if (change == GST_STATE_CHANGE_READY_TO_NULL ||
        (change == GST_STATE_CHANGE_NULL_TO_READY && hasFailed)) {
        removeChildren(reinterpret_cast<PcdSrc*>(element));
        source.close();
    }
    return result;
}

gboolean unlock(GstBaseSrc* source) {
    toSource(source).setFlushing(true);
    return TRUE;
}

gboolean unlockStop(GstBaseSrc* source) {
    toSource(source).setFlushing(false);
    return TRUE;
}

gboolean isSeekable(GstBaseSrc*) {
    return FALSE;
}

/// The caps are those of the first frame, which is not here yet.
gboolean negotiate(GstBaseSrc*) {
    return TRUE;
}

/// No pool: buffers are the camera's memory.
gboolean decideAllocation(GstBaseSrc*, GstQuery*) {
    return TRUE;
}

GstCaps* getCaps(GstBaseSrc* source, GstCaps* filter) {
    GstCaps* const caps = toSource(source).makeCaps();
    if (filter == nullptr)
        return caps;
    GstCaps* const filtered = gst_caps_intersect_full(filter, caps, GST_CAPS_INTERSECT_FIRST);
    gst_caps_unref(caps);
    return filtered;
}

gboolean query(GstBaseSrc* source, GstQuery* query) {
    if (GST_QUERY_TYPE(query) != GST_QUERY_LATENCY)
        return GST_BASE_SRC_CLASS(pcd_src_parent_class)->query(source, query);
    GstClockTime least = 0;
    GstClockTime most = 0;
    toSource(source).latency(least, most);
    gst_query_set_latency(query, TRUE, least, most);
    return TRUE;
}

GstFlowReturn create(GstPushSrc* source, GstBuffer** buffer) {
    return toSource(source).create(buffer);
}

gboolean fireTrigger(PcdSrc* source, gint frames) {
    return source->source->trigger(frames) ? TRUE : FALSE;
}

constexpr GParamFlags readable = GParamFlags(G_PARAM_READABLE | G_PARAM_STATIC_STRINGS);
/// They hold from the next opening on; GStreamer has no flag for that, as a camera is open in
/// READY.
constexpr GParamFlags writable = GParamFlags(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
constexpr GParamFlags always =
    GParamFlags(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | GST_PARAM_MUTABLE_PLAYING);

void installText(GObjectClass* object, Property id, const char* name, const char* description,
                 GParamFlags flags = writable) {
    g_object_class_install_property(object, id,
                                    g_param_spec_string(name, name, description, "", flags));
}

void installTexts(GObjectClass* object) {
    installText(object, Camera, "camera",
                "Index from 0, id, or unique beginning of the id of the camera; empty: the first");
    installText(
        object, Sdk, "sdk",
        "Camera SDK: sim, auto, or the path of the library; empty: that of the process, else "
        "of PCD_GST_SDK, else auto");
    installText(object, Scene, "scene", "Scene file of the simulated cameras");
    installText(
        object, Mode, "mode",
        "Id or name of the resolution; empty: one that the caps after the element allow, the "
        "camera's own if possible");
    installText(object, Settings, "settings",
                "Settings of the camera, ID=VALUE or ID.FIELD=VALUE with commas between them, as "
                "pcdctl set takes them; while it is open, applied at once",
                always);
    installText(object, CameraId, "camera-id", "Id of the camera that is open", readable);
}

void installNumbers(GObjectClass* object) {
    g_object_class_install_property(object, Trigger,
                                    g_param_spec_enum("trigger", "trigger",
                                                      "What starts an exposure", triggerType(),
                                                      int(PGstOptions::Trigger::None), writable));
    g_object_class_install_property(
        object, TriggerFrames,
        g_param_spec_int("trigger-frames", "trigger-frames",
                         "Frames triggered by software when the stream starts; 65535: endlessly", 0,
                         PTriggerControl::endless, 0, writable));
    g_object_class_install_property(
        object, TriggerExposure,
        g_param_spec_uint("trigger-exposure", "trigger-exposure",
                          "Exposure time of triggered frames in microseconds; 0: the camera's own",
                          0, G_MAXUINT, 0, writable));
    g_object_class_install_property(
        object, OnUnplug,
        g_param_spec_enum("on-unplug", "on-unplug", "What happens when the camera is unplugged",
                          onUnplugType(), int(PGstOptions::OnUnplug::Error), writable));
    g_object_class_install_property(
        object, QueueSize,
        g_param_spec_uint("queue-size", "queue-size",
                          "Frames that may wait for the pipeline; of more, the oldest is dropped",
                          1, PGstSource::mostFrames, 4, always));
    g_object_class_install_property(object, Delivered,
                                    g_param_spec_uint64("delivered", "delivered",
                                                        "Frames passed on since the start", 0,
                                                        G_MAXUINT64, 0, readable));
    g_object_class_install_property(
        object, Dropped,
        g_param_spec_uint64("dropped", "dropped",
                            "Frames dropped since the start because the pipeline was too slow", 0,
                            G_MAXUINT64, 0, readable));
    g_object_class_install_property(
        object, Stats,
        g_param_spec_boxed("stats", "stats",
                           "What has happened to the frames since the start: arrived is the sum of "
                           "delivered, dropped, discarded and waiting",
                           GST_TYPE_STRUCTURE, readable));
}

void installFunctions(PcdSrcClass* type) {
    GstBaseSrcClass* const base = GST_BASE_SRC_CLASS(type);
    base->unlock = unlock;
    base->unlock_stop = unlockStop;
    base->is_seekable = isSeekable;
    base->negotiate = negotiate;
    base->decide_allocation = decideAllocation;
    base->get_caps = getCaps;
    base->query = query;
    GST_PUSH_SRC_CLASS(type)->create = create;
    GST_ELEMENT_CLASS(type)->change_state = changeState;
}

} // namespace

static void pcd_src_child_proxy_init(gpointer type, gpointer) {
    auto* const proxy = static_cast<GstChildProxyInterface*>(type);
    proxy->get_children_count = countChildren;
    proxy->get_child_by_index = findChild;
}

static void pcd_src_class_init(PcdSrcClass* type) {
    GObjectClass* const object = G_OBJECT_CLASS(type);
    object->set_property = setProperty;
    object->get_property = getProperty;
    object->finalize = finalize;
    installTexts(object);
    installNumbers(object);
    installFunctions(type);
    g_signal_new_class_handler(
        "trigger", G_TYPE_FROM_CLASS(type), GSignalFlags(G_SIGNAL_RUN_LAST | G_SIGNAL_ACTION),
        G_CALLBACK(fireTrigger), nullptr, nullptr, nullptr, G_TYPE_BOOLEAN, 1, G_TYPE_INT);
    GstElementClass* const element = GST_ELEMENT_CLASS(type);
    gst_element_class_set_static_metadata(element, "Camera source", "Source/Video/Hardware",
                                          "Frames of a camera with a PCd device plugin",
                                          "The PTDevice developers");
    GstCaps* const caps = PGstCaps::makeTemplate();
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
    gst_type_mark_as_plugin_api(triggerType(), GstPluginAPIFlags(0));
    gst_type_mark_as_plugin_api(onUnplugType(), GstPluginAPIFlags(0));
}

static void pcd_src_init(PcdSrc* source) {
    source->source = new PGstSource(&source->parent);
    gst_base_src_set_live(GST_BASE_SRC(source), TRUE);
    gst_base_src_set_format(GST_BASE_SRC(source), GST_FORMAT_TIME);
}
