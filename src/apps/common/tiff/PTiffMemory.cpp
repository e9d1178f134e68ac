// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffMemory.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

/// What libtiff, which writes here and there, calls back from C.
struct PTiffMemory::Calls {
    static PTiffMemory& of(thandle_t handle) { return *static_cast<PTiffMemory*>(handle); }

    static tmsize_t read(thandle_t handle, void* to, tmsize_t size) {
        PTiffMemory& file = of(handle);
        const tmsize_t there =
            std::max<tmsize_t>(0, file.m_bytes.size() - tmsize_t(file.m_position));
        const tmsize_t count = std::min(size, there);
        std::memcpy(to, file.m_bytes.constData() + file.m_position, std::size_t(count));
        file.m_position += toff_t(count);
        return count;
    }

    static tmsize_t write(thandle_t handle, void* from, tmsize_t size) {
        PTiffMemory& file = of(handle);
        const auto end = qsizetype(file.m_position) + size;
        try {
            if (file.m_bytes.size() < end)
                file.m_bytes.resize(end);
            std::memcpy(file.m_bytes.data() + file.m_position, from, std::size_t(size));
        } catch (const std::bad_alloc&) {
            file.m_outOfMemory = true; // thrown by write(): libtiff is C
            return -1;
        }
        file.m_position = toff_t(end);
        return size;
    }

    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        PTiffMemory& file = of(handle);
        if (whence == SEEK_CUR)
            offset += file.m_position;
        else if (whence == SEEK_END)
            offset += toff_t(file.m_bytes.size());
        return file.m_position = offset;
    }

    static int close(thandle_t) { return 0; }

    static toff_t size(thandle_t handle) { return toff_t(of(handle).m_bytes.size()); }
};

PTiffMemory::PTiffMemory(qsizetype room) {
    m_bytes.reserve(room);
}

bool PTiffMemory::write(const std::function<bool(TIFF*)>& writer) {
    bool done = false;
    {
        const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(
            TIFFClientOpen("picture", "wl", this, Calls::read, Calls::write, Calls::seek,
                           Calls::close, Calls::size, nullptr, nullptr),
            &TIFFClose);
        done = tiff && writer(tiff.get());
    }
    if (m_outOfMemory)
        throw std::bad_alloc();
    return done;
}
