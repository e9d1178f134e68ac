// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimPullDelivery.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

// One row in the client's pixel format: grey becomes three equal channels, the fourth byte stays 0.
void copyRow(const PSimPicture& picture, const std::uint8_t* from, unsigned pixelBytes,
             std::uint8_t* to) {
    const unsigned channels = picture.bits / 8;
    for (unsigned x = 0; x < picture.width; ++x, from += channels, to += pixelBytes) {
        to[0] = from[0];
        to[1] = from[channels == 3 ? 1 : 0];
        to[2] = from[channels == 3 ? 2 : 0];
        if (pixelBytes == 4)
            to[3] = 0;
    }
}

void copyPicture(const PSimPicture& picture, int bits, std::uint8_t* to) {
    const std::size_t stride = (std::size_t{picture.width} * unsigned(bits) + 31) / 32 * 4;
    if (unsigned(bits) == picture.bits) {
        std::memcpy(to, picture.pixels, picture.bytes());
        return;
    }
    for (unsigned y = 0; y < picture.height; ++y)
        copyRow(picture, picture.pixels + y * picture.stride(), unsigned(bits) / 8,
                to + y * stride);
}

ToupcamFrameInfoV2 toFrameInfo(const PSimPicture& picture) {
    ToupcamFrameInfoV2 info{};
    info.width = picture.width;
    info.height = picture.height;
    info.flag = TOUPCAM_FRAMEINFO_FLAG_SEQ | TOUPCAM_FRAMEINFO_FLAG_TIMESTAMP;
    info.seq = picture.sequence;
    info.timestamp = picture.microseconds;
    return info;
}

} // namespace

void PSimPullDelivery::Slot::put(PSimPicture& next) {
    const std::lock_guard lock(mutex);
    std::swap(promised ? newer : picture, next);
    hasNewer = promised;
    full = true;
}

// Called under the lock.
void PSimPullDelivery::Slot::advance() {
    if (hasNewer)
        std::swap(picture, newer);
    full = hasNewer || full;
    hasNewer = false;
    promised = false;
}

HRESULT PSimPullDelivery::Slot::take(void* buffer, int bits, ToupcamFrameInfoV2* info) {
    const std::lock_guard lock(mutex);
    if (!buffer)
        advance();
    if (!full)
        return E_PENDING;
    if (info)
        *info = toFrameInfo(picture);
    if (!buffer) {
        promised = true;
        return S_OK;
    }
    copyPicture(picture, bits, static_cast<std::uint8_t*>(buffer));
    full = false;
    advance();
    return S_OK;
}

PSimPullDelivery::PSimPullDelivery(PTOUPCAM_EVENT_CALLBACK callback, void* context)
    : m_events(std::make_shared<PSimEventThread>(callback, context)) {
}

void PSimPullDelivery::start(const void* owner, std::function<void()> wake) {
    m_wake = std::move(wake);
    m_events->start(owner);
}

void PSimPullDelivery::frame(PSimPicture& picture) {
    m_live.put(picture);
    m_events->postOnce(TOUPCAM_EVENT_IMAGE, m_wake);
}

void PSimPullDelivery::still(PSimPicture& picture) {
    m_still.put(picture);
    m_events->post(TOUPCAM_EVENT_STILLIMAGE);
}

bool PSimPullDelivery::isReady() const {
    return !m_events->isWaiting(TOUPCAM_EVENT_IMAGE);
}

void PSimPullDelivery::lost(std::function<void()> afterwards) {
    m_events->post(TOUPCAM_EVENT_DISCONNECTED, std::move(afterwards));
}

void PSimPullDelivery::exposureChanged() {
    m_events->postOnce(TOUPCAM_EVENT_EXPOSURE);
}

bool PSimPullDelivery::raw(const void* /*data*/, const BITMAPINFOHEADER* /*header*/,
                           int /*isSnapshot*/) {
    return false;
}

bool PSimPullDelivery::event(unsigned code, std::function<void()> afterwards) {
    m_events->post(code, std::move(afterwards));
    return true;
}

HRESULT PSimPullDelivery::pull(bool still, void* buffer, int bits, ToupcamFrameInfoV2* info) {
    if (bits != 24 && bits != 32)
        return E_INVALIDARG;
    return (still ? m_still : m_live).take(buffer, bits, info);
}

void PSimPullDelivery::requestStop() {
    m_events->requestStop();
}

void PSimPullDelivery::join() {
    m_events->join();
}
