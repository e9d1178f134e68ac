// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffStream.h>

#include <tiffio.h>

#include <algorithm>
#include <cstdio>

/// The callbacks for libtiff.
struct PTiffStream::Calls {
    static PTiffStream& toStream(thandle_t handle) { return *static_cast<PTiffStream*>(handle); }

    static tmsize_t read(thandle_t handle, void* to, tmsize_t size) {
        PTiffStream& stream = toStream(handle);
        const qint64 count = stream.read(stream.m_position, to, size);
        stream.m_position += std::max<qint64>(count, 0);
        return count;
    }

    static tmsize_t write(thandle_t handle, void* from, tmsize_t size) {
        PTiffStream& stream = toStream(handle);
        const bool isDropped = stream.m_isClosing && stream.m_atClose == AtClose::Dropped;
        if (isDropped || !stream.write(stream.m_position, from, size))
            return -1;
        stream.m_position += size;
        return size;
    }

    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        PTiffStream& stream = toStream(handle);
        const qint64 from = whence == SEEK_END   ? stream.size()
                            : whence == SEEK_CUR ? stream.m_position
                                                 : 0;
        stream.m_position = from + qint64(offset);
        return toff_t(stream.m_position);
    }

    static int close(thandle_t) { return 0; }

    static toff_t size(thandle_t handle) { return toff_t(toStream(handle).size()); }

    /// The caller reports the failure in its own words.
    static int keepQuiet(TIFF*, void*, const char*, const char*, va_list) { return 1; }
};

void PTiffStream::Close::operator()(tiff* handle) const {
    Calls::toStream(TIFFClientdata(handle)).m_isClosing = true;
    TIFFClose(handle);
}

PTiffStream::Handle PTiffStream::open(const char* mode, AtClose atClose) {
    m_position = 0;
    m_atClose = atClose;
    m_isClosing = false;
    TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, Calls::keepQuiet, nullptr);
    Handle handle(TIFFClientOpenExt("stream", mode, this, Calls::read, Calls::write, Calls::seek,
                                    Calls::close, Calls::size, nullptr, nullptr, options));
    TIFFOpenOptionsFree(options);
    return handle;
}
