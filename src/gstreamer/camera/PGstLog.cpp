// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstLog.h>

#include <PLog/PLog.h>

#include <gst/gst.h>

#include <memory>

namespace {

GstDebugCategory* logCategory() {
    static GstDebugCategory* const category =
        _gst_debug_category_new("pcd", 0, "Camera framework and plugins");
    return category;
}

GstDebugLevel toGstLevel(PLogLevel level) {
    switch (level) {
    case PLogLevel::Debug:
        return GST_LEVEL_DEBUG;
    case PLogLevel::Info:
        return GST_LEVEL_INFO;
    case PLogLevel::Warning:
        return GST_LEVEL_WARNING;
    case PLogLevel::Error:
        return GST_LEVEL_ERROR;
    case PLogLevel::Off:
        break;
    }
    return GST_LEVEL_NONE;
}

} // namespace

void PGstLog::install() {
    static const bool isInstalled = [] {
        PLog::addSink(std::make_shared<PGstLog>());
        return true;
    }();
    Q_UNUSED(isInstalled)
}

void PGstLog::write(const PLogRecord& record) {
    GST_CAT_LEVEL_LOG(logCategory(), toGstLevel(record.level), nullptr, "%s: %s",
                      record.source.toUtf8().constData(), record.text().toUtf8().constData());
}
