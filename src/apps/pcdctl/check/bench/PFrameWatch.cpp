// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PFrameWatch.h>

#include <algorithm>

namespace {

constexpr std::size_t comparedBytes = 65536;

QSize toSize(const PImage& image) {
    return {int(image.width()), int(image.height())};
}

QByteArray copyBeginning(const PImage& image) {
    const PDIP::ImageRawData pixels = image.rawData(PDIP::AccessMode::Read);
    return {reinterpret_cast<const char*>(pixels.constData()),
            qsizetype(std::min(pixels.size(), comparedBytes))};
}

} // namespace

bool PFrameWatch::takeFrame(const PDeviceFrame& frame, Kind kind) {
    const std::lock_guard lock(m_mutex);
    if (kind == Kind::Live) {
        takeLive(frame.image);
        return true;
    }
    ++m_seen.stills;
    m_seen.stillSize = toSize(frame.image);
    return true;
}

void PFrameWatch::takeLive(const PImage& image) {
    ++m_seen.live;
    m_seen.liveSize = toSize(image);
    const PImageHeader header = image.header();
    if (m_header && m_header->width() == header.width() && m_header->height() == header.height())
        m_seen.hasMixedForms = m_seen.hasMixedForms || *m_header != header;
    m_header = header;
    if (m_kept.isNull()) {
        m_kept = image;
        m_keptBytes = copyBeginning(image);
    } else {
        m_seen.hasChanged = m_seen.hasChanged || copyBeginning(m_kept) != m_keptBytes;
    }
}

PFrameWatch::Seen PFrameWatch::seen() const {
    const std::lock_guard lock(m_mutex);
    return m_seen;
}

void PFrameWatch::reset() {
    const std::lock_guard lock(m_mutex);
    m_seen = {};
    m_kept = {};
    m_keptBytes.clear();
    m_header.reset();
}
