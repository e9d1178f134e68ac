// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffMemory.h>

#include <algorithm>
#include <cstring>
#include <new>

PTiffMemory::PTiffMemory(qsizetype room) {
    m_bytes.reserve(room);
}

bool PTiffMemory::write(const std::function<bool(tiff*)>& writer) {
    bool done = false;
    {
        const Handle handle = open("wl", AtClose::Written);
        done = handle && writer(handle.get());
    }
    if (m_outOfMemory)
        throw std::bad_alloc();
    return done;
}

qint64 PTiffMemory::read(qint64 offset, void* bytes, qint64 count) noexcept {
    const qint64 available = std::clamp<qint64>(m_bytes.size() - offset, 0, count);
    if (available > 0)
        std::memcpy(bytes, m_bytes.constData() + offset, std::size_t(available));
    return available;
}

bool PTiffMemory::write(qint64 offset, const void* bytes, qint64 count) noexcept {
    try {
        if (m_bytes.size() < offset + count)
            m_bytes.resize(offset + count);
        std::memcpy(m_bytes.data() + offset, bytes, std::size_t(count));
        return true;
    } catch (const std::bad_alloc&) {
        m_outOfMemory = true; // thrown once libtiff, which is C, has returned
        return false;
    }
}
