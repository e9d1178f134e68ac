// SPDX-License-Identifier: MIT
#include <apps/common/PTiffEncoder.h>

#include <QtEndian>

#include <limits>

namespace {

// Tags and types of TIFF Revision 6.0, Part 1, in the rising order the format demands.
enum Tag : quint16 {
    ImageWidth = 256,
    ImageLength = 257,
    BitsPerSample = 258,
    Compression = 259,
    PhotometricInterpretation = 262,
    ImageDescription = 270,
    StripOffsets = 273,
    SamplesPerPixel = 277,
    RowsPerStrip = 278,
    StripByteCounts = 279,
};
enum Type : quint16 { Ascii = 2, Short = 3, Long = 4 };

constexpr quint32 headerSize = 8;
constexpr quint32 entryCount = 10;
constexpr quint32 directorySize = 2 + entryCount * 12 + 4;

template <typename T>
void append(QByteArray& bytes, T value) {
    char little[sizeof(T)];
    qToLittleEndian(value, little);
    bytes.append(little, sizeof little);
}

void appendEntry(QByteArray& bytes, Tag tag, Type type, quint32 count, quint32 value) {
    append<quint16>(bytes, tag);
    append<quint16>(bytes, type);
    append(bytes, count);
    append(bytes, value); // a short in the low half, which comes first
}

/// Where the parts of the file lie: header, directory, depths, text, pixels.
struct Layout {
    Layout(const QImage& image, const QByteArray& text)
        : samples(image.isGrayscale() ? 1 : 3)
        , textSize(quint32(text.size()) + 1) // with its NUL
        , pixelBytes(quint64(image.width()) * quint64(image.height()) * samples)
        , depths(headerSize + directorySize)
        , description(depths + 3 * sizeof(quint16))
        , pixels((description + textSize + 1) & ~quint32(1)) {}

    bool fits() const {
        return pixelBytes > 0 && pixels + pixelBytes <= std::numeric_limits<quint32>::max();
    }

    quint32 samples;
    quint32 textSize;
    quint64 pixelBytes;
    quint32 depths;
    quint32 description;
    quint32 pixels;
};

void appendDirectory(QByteArray& bytes, const QImage& image, const Layout& layout) {
    const bool colour = layout.samples == 3;
    append<quint16>(bytes, entryCount);
    appendEntry(bytes, ImageWidth, Long, 1, quint32(image.width()));
    appendEntry(bytes, ImageLength, Long, 1, quint32(image.height()));
    // Three depths do not fit into an entry, one must be in it.
    appendEntry(bytes, BitsPerSample, Short, layout.samples, colour ? layout.depths : 8);
    appendEntry(bytes, Compression, Short, 1, 1);                            // none
    appendEntry(bytes, PhotometricInterpretation, Short, 1, colour ? 2 : 1); // RGB, black is zero
    appendEntry(bytes, ImageDescription, Ascii, layout.textSize, layout.description);
    appendEntry(bytes, StripOffsets, Long, 1, layout.pixels);
    appendEntry(bytes, SamplesPerPixel, Short, 1, layout.samples);
    appendEntry(bytes, RowsPerStrip, Long, 1, quint32(image.height()));
    appendEntry(bytes, StripByteCounts, Long, 1, quint32(layout.pixelBytes));
    append<quint32>(bytes, 0); // no further directory
}

} // namespace

QByteArray PTiffEncoder::encode(const QImage& image, const QString& description) {
    // A value of up to four bytes would have to lie in the directory itself.
    const QByteArray text = description.toUtf8().leftJustified(4, ' ');
    const Layout layout(image, text);
    if (!layout.fits())
        return {};
    const QImage packed = image.convertToFormat(layout.samples == 3 ? QImage::Format_RGB888
                                                                    : QImage::Format_Grayscale8);
    QByteArray bytes;
    bytes.reserve(qsizetype(layout.pixels + layout.pixelBytes));
    bytes.append("II*\0", 4);
    append(bytes, headerSize); // where the directory is
    appendDirectory(bytes, image, layout);
    for (int i = 0; i < 3; ++i)
        append<quint16>(bytes, 8);
    bytes.append(text);
    bytes.append(qsizetype(layout.pixels) - bytes.size(), '\0');
    for (int y = 0; y < packed.height(); ++y) {
        bytes.append(reinterpret_cast<const char*>(packed.constScanLine(y)),
                     qsizetype(packed.width()) * qsizetype(layout.samples));
    }
    return bytes;
}
