// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstBuffer.h>

#include <memory>

namespace {

void deleteImage(gpointer image) {
    delete static_cast<PImage*>(image);
}

} // namespace

GstBuffer* PGstBuffer::wrap(const PImage& image) {
    if (image.isNull())
        return nullptr;
    auto kept = std::make_unique<PImage>(image);
    const PDIP::ImageRawData data = std::as_const(*kept).rawData(PDIP::AccessMode::Read);
    // GStreamer takes an address for writing; the flag keeps everybody from using it as one.
    auto* const bytes = const_cast<unsigned char*>(data.constData());
    GstBuffer* const buffer = gst_buffer_new();
    gst_buffer_append_memory(buffer,
                             gst_memory_new_wrapped(GST_MEMORY_FLAG_READONLY, bytes, data.size(), 0,
                                                    data.size(), kept.release(), deleteImage));
    return buffer;
}
