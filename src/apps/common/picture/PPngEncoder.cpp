// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPngEncoder.h>

#include <apps/common/picture/PPngText.h>
#include <apps/common/tiff/PTiffExif.h>

#include <png.h>
#include <zlib.h>

#include <cmath>
#include <csetjmp>
#include <limits>
#include <new>

namespace {

/// What decides the time and the size.
struct Settings {
    int filters;
    int strategy;
    int level;
};

/// In the noise of a frame nothing repeats: the search for repetitions takes nine tenths of the
/// time of zlib's default and saves nothing. What saves space is to predict each sample from its
/// neighbours; the mean of two adds the least noise of its own. Runs cost no search, and keep black
/// and clipped areas small.
constexpr Settings frameSettings{PNG_FILTER_AVG, Z_RLE, 1};
constexpr Settings windowSettings{PNG_ALL_FILTERS, Z_DEFAULT_STRATEGY, 6};

struct Output {
    QByteArray bytes;
    bool outOfMemory = false; ///< for the bytes, or for libpng itself
};

void append(png_structp png, png_bytep bytes, std::size_t size) {
    Output& output = *static_cast<Output*>(png_get_io_ptr(png));
    try {
        output.bytes.append(reinterpret_cast<const char*>(bytes), qsizetype(size));
    } catch (const std::bad_alloc&) {
        output.outOfMemory = true;
    }
    if (output.outOfMemory)
        png_error(png, "no memory"); // after the handler: it does not return
}

void flushNothing(png_structp) {
}

/// Notes that there is no memory, which libpng reports as any other failure.
png_voidp allocate(png_structp png, png_alloc_size_t size) {
    void* const memory = ::operator new(size, std::nothrow);
    if (memory == nullptr)
        static_cast<Output*>(png_get_mem_ptr(png))->outOfMemory = true;
    return memory;
}

void release(png_structp, png_voidp memory) {
    ::operator delete(memory);
}

/// The caller reports the failure in its own words.
[[noreturn]] void leave(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void keepQuiet(png_structp, png_const_charp) {
}

/// The picture in a format whose rows libpng accepts: the picture itself, without a copy, if it is
/// Grayscale8, RGB888 or BGR888. Throws std::bad_alloc.
QImage toWritable(const QImage& image) {
    switch (image.format()) {
    case QImage::Format_Grayscale8:
    case QImage::Format_RGB888:
    case QImage::Format_BGR888:
        return image;
    default:
        break;
    }
    QImage converted = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_RGBA8888
                                                                     : QImage::Format_RGB888);
    if (converted.isNull())
        throw std::bad_alloc();
    return converted;
}

int colourType(const QImage& writable) {
    switch (writable.format()) {
    case QImage::Format_Grayscale8:
        return PNG_COLOR_TYPE_GRAY;
    case QImage::Format_RGBA8888:
        return PNG_COLOR_TYPE_RGB_ALPHA;
    default:
        return PNG_COLOR_TYPE_RGB;
    }
}

/// 0 if the size of a pixel is not known.
png_uint_32 pixelsPerMetre(const PPictureTags& tags) {
    const double pixels = tags.pixelSizeUm ? 1e6 / *tags.pixelSizeUm : 0;
    return pixels > 0 && pixels <= std::numeric_limits<int>::max()
               ? png_uint_32(std::lround(pixels))
               : 0;
}

/// All that a file is made of, prepared so that nothing is created while libpng may jump.
struct Parts {
    QImage picture;
    PPngText text;
    QByteArray exif;
    png_uint_32 pixelsPerMetre = 0;
    Settings settings{};
};

void writeInformation(png_structp png, png_infop info, Parts& parts) {
    png_set_IHDR(png, info, png_uint_32(parts.picture.width()), png_uint_32(parts.picture.height()),
                 8, colourType(parts.picture), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (parts.pixelsPerMetre > 0)
        png_set_pHYs(png, info, parts.pixelsPerMetre, parts.pixelsPerMetre, PNG_RESOLUTION_METER);
    if (!parts.exif.isEmpty())
        png_set_eXIf_1(png, info, png_uint_32(parts.exif.size()),
                       reinterpret_cast<png_bytep>(parts.exif.data()));
    parts.text.setIn(png, info);
    png_write_info(png, info);
}

void writeRows(png_structp png, const QImage& picture) {
    if (picture.format() == QImage::Format_BGR888)
        png_set_bgr(png);
    for (int y = 0; y < picture.height(); ++y)
        png_write_row(png, picture.constScanLine(y));
}

/// libpng reports failures by a jump to here. Objects with destructors belong to the callers: the
/// jump skips them.
bool write(png_structp png, png_infop info, Parts& parts) {
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_set_filter(png, PNG_FILTER_TYPE_BASE, parts.settings.filters);
    png_set_compression_strategy(png, parts.settings.strategy);
    png_set_compression_level(png, parts.settings.level);
    writeInformation(png, info, parts);
    writeRows(png, parts.picture);
    png_write_end(png, nullptr);
    return true;
}

QByteArray toFile(Parts& parts) {
    Output output;
    png_structp png = png_create_write_struct_2(PNG_LIBPNG_VER_STRING, nullptr, leave, keepQuiet,
                                                &output, allocate, release);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        throw std::bad_alloc();
    }
    png_set_write_fn(png, &output, append, flushNothing);
    const bool done = write(png, info, parts);
    png_destroy_write_struct(&png, &info);
    if (output.outOfMemory)
        throw std::bad_alloc();
    return done ? output.bytes : QByteArray();
}

} // namespace

QByteArray PPngEncoder::encode(const QImage& image, const PPictureNotes& notes, Content content) {
    if (image.isNull())
        return {};
    Parts parts{toWritable(image), PPngText(notes.text), PTiffExif::block(notes.tags),
                pixelsPerMetre(notes.tags),
                content == Content::Frame ? frameSettings : windowSettings};
    return toFile(parts);
}
