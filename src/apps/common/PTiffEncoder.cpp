// SPDX-License-Identifier: MIT
#include <apps/common/PTiffEncoder.h>

#include <apps/common/PTiffTags.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace {

/// A file in memory for libtiff, which writes here and there and calls back from C.
struct MemoryFile {
    QByteArray bytes;
    toff_t position = 0;
    bool outOfMemory = false;
};

MemoryFile& fileOf(thandle_t handle) {
    return *static_cast<MemoryFile*>(handle);
}

tmsize_t readFile(thandle_t handle, void* to, tmsize_t size) {
    MemoryFile& file = fileOf(handle);
    const tmsize_t there = std::max<tmsize_t>(0, file.bytes.size() - tmsize_t(file.position));
    const tmsize_t count = std::min(size, there);
    std::memcpy(to, file.bytes.constData() + file.position, std::size_t(count));
    file.position += toff_t(count);
    return count;
}

tmsize_t writeFile(thandle_t handle, void* from, tmsize_t size) {
    MemoryFile& file = fileOf(handle);
    const auto end = qsizetype(file.position) + size;
    try {
        if (file.bytes.size() < end)
            file.bytes.resize(end);
        std::memcpy(file.bytes.data() + file.position, from, std::size_t(size));
    } catch (const std::bad_alloc&) {
        file.outOfMemory = true; // told when libtiff, being C, is left behind
        return -1;
    }
    file.position = toff_t(end);
    return size;
}

toff_t seekFile(thandle_t handle, toff_t offset, int whence) {
    MemoryFile& file = fileOf(handle);
    if (whence == SEEK_CUR)
        offset += file.position;
    else if (whence == SEEK_END)
        offset += toff_t(file.bytes.size());
    return file.position = offset;
}

int closeFile(thandle_t) {
    return 0;
}

toff_t sizeOfFile(thandle_t handle) {
    return toff_t(fileOf(handle).bytes.size());
}

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tiff openForWriting(MemoryFile& file) {
    return {TIFFClientOpen("picture", "wl", &file, readFile, writeFile, seekFile, closeFile,
                           sizeOfFile, nullptr, nullptr),
            &TIFFClose};
}

bool writeRows(TIFF* tiff, const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        // libtiff only reads the row, but its interface is older than const.
        if (TIFFWriteScanline(tiff, const_cast<uchar*>(image.constScanLine(y)), uint32_t(y)) < 0)
            return false;
    }
    return TIFFWriteDirectory(tiff) != 0;
}

bool write(MemoryFile& file, const QImage& image, int samples, const QByteArray& description) {
    const Tiff tiff = openForWriting(file);
    const PTiffTags tags{image.width(), image.height(), samples, image.height(), description};
    return tiff && tags.writeTo(tiff.get()) && writeRows(tiff.get(), image);
}

/// What a picture's rows, directory and text take at most, below the format's 4 GiB.
bool fits(const QImage& image, int samples, const QByteArray& description) {
    constexpr qint64 directory = 4096;
    const qint64 pixels = qint64(image.width()) * image.height() * samples;
    return pixels > 0 && pixels + description.size() + directory < qint64(1) << 32;
}

} // namespace

QByteArray PTiffEncoder::encode(const QImage& image, const QString& description) {
    const int samples = image.isGrayscale() ? 1 : 3;
    const QByteArray text = description.toUtf8();
    if (!fits(image, samples, text))
        return {};
    MemoryFile file;
    file.bytes.reserve(qsizetype(image.width()) * image.height() * samples + text.size());
    const auto format = samples == 3 ? QImage::Format_RGB888 : QImage::Format_Grayscale8;
    const QImage packed = image.convertToFormat(format);
    if (packed.isNull())
        throw std::bad_alloc();
    const bool done = write(file, packed, samples, text);
    if (file.outOfMemory)
        throw std::bad_alloc();
    return done ? file.bytes : QByteArray();
}
