// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <memory>

struct tiff;

/// Bytes that libtiff reads and writes, wherever they are stored. libtiff calls these functions
/// from C, so they must not throw. One thread.
class PTiffStream {
public:
    virtual ~PTiffStream() = default;

    /// Closes a handle; see AtClose.
    struct Close {
        void operator()(tiff* handle) const;
    };
    using Handle = std::unique_ptr<tiff, Close>;

    /// Whether data that libtiff still buffers is written or dropped when a handle is closed. After
    /// a failure libtiff would try to write it again then.
    enum class AtClose { Written, Dropped };

    /// Opens a handle at the beginning of the stream, with a mode of TIFFOpen(): "wl" for a new
    /// file. Null if the bytes are not a TIFF file. One handle at a time; the stream must outlive
    /// it. Errors go to the caller only, never to the standard error stream.
    Handle open(const char* mode, AtClose atClose);

protected:
    /// Returns the number of bytes read, which is less at the end, or -1.
    virtual qint64 read(qint64 offset, void* bytes, qint64 count) noexcept = 0;
    /// Writes all, or fails.
    virtual bool write(qint64 offset, const void* bytes, qint64 count) noexcept = 0;
    virtual qint64 size() const noexcept = 0;

private:
    struct Calls;

    qint64 m_position = 0;
    AtClose m_atClose = AtClose::Written;
    bool m_isClosing = false;
};
