// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstCaps.h>

#include <gst/video/video.h>

#include <algorithm>

namespace {

const char* const formats = "{ GRAY8, BGR, RGBx, BGRx }";

GstVideoFormat toVideoFormat(PDIP::ColorFormat format) {
    switch (format) {
    case PDIP::ColorFormat::Gray:
        return GST_VIDEO_FORMAT_GRAY8;
    case PDIP::ColorFormat::Bgr:
        return GST_VIDEO_FORMAT_BGR;
    case PDIP::ColorFormat::Xrgb: // red comes first in memory, in spite of the name
        return GST_VIDEO_FORMAT_RGBx;
    case PDIP::ColorFormat::BgrX:
        return GST_VIDEO_FORMAT_BGRx;
    }
    return GST_VIDEO_FORMAT_UNKNOWN;
}

GstCaps* makeCaps() {
    const QByteArray text = QByteArray("video/x-raw, format=(string)") + formats +
                            ", width=[1,max], height=[1,max], framerate=0/1";
    return gst_caps_from_string(text.constData());
}

GstCaps* makeSized(const PDeviceMode& mode) {
    GstCaps* const caps = makeCaps();
    gst_caps_set_simple(caps, "width", G_TYPE_INT, mode.width, "height", G_TYPE_INT, mode.height,
                        nullptr);
    return caps;
}

bool allows(const GstCaps* caps, const PDeviceMode& mode) {
    GstCaps* const sized = makeSized(mode);
    const bool can = gst_caps_can_intersect(caps, sized) != FALSE;
    gst_caps_unref(sized);
    return can;
}

} // namespace

GstCaps* PGstCaps::makeTemplate() {
    return makeCaps();
}

GstCaps* PGstCaps::fromModes(const QList<PDeviceMode>& modes) {
    if (modes.isEmpty())
        return makeCaps();
    GstCaps* caps = gst_caps_new_empty();
    for (const PDeviceMode& mode : modes)
        caps = gst_caps_merge(caps, makeSized(mode));
    return caps;
}

GstCaps* PGstCaps::fromHeader(const PImageHeader& header) {
    GstVideoInfo info;
    const GstVideoFormat format = toVideoFormat(header.format());
    if (format == GST_VIDEO_FORMAT_UNKNOWN || !header.isValid() ||
        gst_video_info_set_format(&info, format, guint(header.width()), guint(header.height())) ==
            FALSE)
        return nullptr;
    // Both pad rows to four bytes; if one of them no longer did, pictures would be skewed.
    if (GST_VIDEO_INFO_SIZE(&info) != header.dataSize() ||
        std::size_t(GST_VIDEO_INFO_PLANE_STRIDE(&info, 0)) != header.bytesPerLine())
        return nullptr;
    GST_VIDEO_INFO_FPS_N(&info) = 0;
    GST_VIDEO_INFO_FPS_D(&info) = 1;
    return gst_video_info_to_caps(&info);
}

PDeviceMode PGstCaps::choose(const GstCaps* caps, const QList<PDeviceMode>& modes,
                             const PDeviceMode& preferred) {
    if (allows(caps, preferred))
        return preferred;
    const auto found = std::find_if(modes.begin(), modes.end(),
                                    [caps](const PDeviceMode& mode) { return allows(caps, mode); });
    return found == modes.end() ? PDeviceMode() : *found;
}

QString PGstCaps::toText(const GstCaps* caps) {
    char* const text = gst_caps_to_string(caps);
    const QString result = QString::fromUtf8(text);
    g_free(text);
    return result;
}
