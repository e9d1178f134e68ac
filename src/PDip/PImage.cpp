// SPDX-License-Identifier: MIT
#include <PDip/PImage.h>

#include <PDip/PBufferPool.h>
#include <PDip/PPixelCopy.h>
#include <PDip/dip_exception.h>

#include <QDebug>

#include <new>

namespace {

/// Pixel memory, shared by images and by the QImages made of them.
struct Pixels : QSharedData {
    explicit Pixels(std::size_t bytes)
        : buffer(PBufferPool::instance().acquire(bytes))
        , size(bytes) {
        if (!buffer)
            throw std::bad_alloc();
    }

    PBufferPool::Buffer buffer;
    const std::size_t size;
};

using PixelsPtr = QExplicitlySharedDataPointer<Pixels>;

/// True if there is no other owner. Acquire order: if the count is one, everything that another
/// thread did before it released the memory is visible to the caller. (Qt's own detaching reads the
/// count without such order.)
template <typename Pointer>
bool isOwned(const Pointer& pointer) {
    return pointer->ref.loadAcquire() == 1;
}

QImage::Format qtFormat(PDIP::ColorFormat format) {
    switch (format) {
    case PDIP::ColorFormat::Gray:
        return QImage::Format_Grayscale8;
    case PDIP::ColorFormat::Bgr:
        return QImage::Format_BGR888;
    case PDIP::ColorFormat::Xrgb:
        return QImage::Format_RGBX8888;
    case PDIP::ColorFormat::BgrX:
        return QImage::Format_RGB32;
    }
    return QImage::Format_Invalid;
}

const char* formatName(PDIP::ColorFormat format) {
    switch (format) {
    case PDIP::ColorFormat::Gray:
        return "Gray";
    case PDIP::ColorFormat::Bgr:
        return "Bgr";
    case PDIP::ColorFormat::Xrgb:
        return "Xrgb";
    case PDIP::ColorFormat::BgrX:
        return "BgrX";
    }
    return "unknown";
}

void releasePixels(void* pixels) {
    delete static_cast<PixelsPtr*>(pixels);
}

} // namespace

unsigned char* PDIP::ImageRawData::data() const {
    if (m_mode == AccessMode::Read)
        throw dip_exception("invalid mode for access");
    return m_data;
}

class PImage::Data : public QSharedData {
public:
    bool ownsPixels() const { return pixels && isOwned(pixels); }

    PImageHeader header;
    PixelsPtr pixels;
    QMap<QString, QVariant> metaInformation;
    std::shared_ptr<const PImageAttachment> attachment;
};

PImage::PImage() = default;
PImage::PImage(const PImage&) = default;
PImage::PImage(PImage&&) noexcept = default;
PImage& PImage::operator=(const PImage&) = default;
PImage& PImage::operator=(PImage&&) noexcept = default;
PImage::~PImage() = default;

/// This image's own record, detached so that it can be changed; the pixels stay shared.
PImage::Data& PImage::ownData() {
    if (!d)
        d = new Data;
    else if (!isOwned(d))
        d = new Data(*d);
    return *d;
}

bool PImage::create(long width, long height, PDIP::ColorFormat format, PDIP::Channel channel,
                    PDIP::Origin origin, PDIP::RowsAlign align) {
    return create(PImageHeader(width, height, format, channel, origin, align));
}

bool PImage::create(const PImageHeader& header) {
    // Released first, so that the pool can reuse the same memory.
    d.reset();
    return setGeometry(header);
}

/// Allocates pixel memory for this geometry. On failure the image is empty.
bool PImage::setGeometry(const PImageHeader& header) {
    try {
        if (header.isValid()) {
            PixelsPtr pixels(new Pixels(header.dataSize()));
            Data& data = ownData();
            data.pixels = pixels;
            data.header = header;
            return true;
        }
    } catch (const std::bad_alloc&) {
        // The result reports it.
    }
    d.reset();
    return false;
}

bool PImage::set(const unsigned char* data, const PImageHeader& header) {
    const std::size_t size = header.dataSize();
    const bool fits = d && isOwned(d) && d->ownsPixels() && d->pixels->size == size;
    const PImage before = fits ? PImage() : *this; // data may point into it
    if (!data || (!fits && !setGeometry(header))) {
        d.reset();
        return false;
    }
    d->header = header;
    unsigned char* const target = d->pixels->buffer.get();
    if (data != target) // any other part of these pixels is smaller
        PPixelCopy::copy(target, data, size);
    return true;
}

bool PImage::isNull() const {
    return !d || !d->pixels;
}

PImageHeader PImage::header() const {
    return d ? d->header : PImageHeader();
}

PDIP::ImageRawData PImage::rawData(PDIP::AccessMode mode) {
    if (mode == PDIP::AccessMode::Read || isNull())
        return opened(mode);
    Data& data = ownData();
    if (!data.ownsPixels()) {
        const PixelsPtr shared = data.pixels;
        data.pixels = new Pixels(shared->size);
        if (mode == PDIP::AccessMode::ReadWrite)
            PPixelCopy::copy(data.pixels->buffer.get(), shared->buffer.get(), shared->size);
    }
    return opened(mode);
}

PDIP::ImageRawData PImage::rawData(PDIP::AccessMode mode) const {
    if (mode != PDIP::AccessMode::Read)
        throw PDIP::dip_exception("invalid mode for access");
    return opened(mode);
}

PDIP::ImageRawData PImage::opened(PDIP::AccessMode mode) const {
    if (isNull())
        return {nullptr, 0, mode};
    return {d->pixels->buffer.get(), d->pixels->size, mode};
}

bool PImage::reinterpretFormat(PDIP::ColorFormat format) {
    PImageHeader changed = header();
    changed.setFormat(format);
    if (isNull() || changed.bytesPerPixel() != header().bytesPerPixel())
        return false;
    ownData().header = changed;
    return true;
}

void PImage::setMetaInformation(const QMap<QString, QVariant>& information) {
    ownData().metaInformation = information;
}

QMap<QString, QVariant> PImage::metaInformation() const {
    return d ? d->metaInformation : QMap<QString, QVariant>();
}

void PImage::setAttachment(std::shared_ptr<const PImageAttachment> attachment) {
    ownData().attachment = std::move(attachment);
}

std::shared_ptr<const PImageAttachment> PImage::attachment() const {
    return d ? d->attachment : nullptr;
}

QImage PImage::toQImage() const {
    if (isNull() || width() > INT_MAX || height() > INT_MAX)
        return {};
    auto keeper = std::make_unique<PixelsPtr>(d->pixels);
    // As const bytes: QImage then copies them before it is painted on, and this image stays
    // unchanged.
    const uchar* bytes = d->pixels->buffer.get();
    QImage image(bytes, int(width()), int(height()), qsizetype(bytesPerLine()), qtFormat(format()),
                 releasePixels, keeper.get());
    if (!image.isNull())
        static_cast<void>(keeper.release()); // now owned by the QImage
    return image;
}

QDebug operator<<(QDebug debug, const PImage& image) {
    const QDebugStateSaver saver(debug);
    if (image.isNull())
        return debug.nospace() << "PImage(null)";
    return debug.nospace() << "PImage(" << image.width() << 'x' << image.height() << ", "
                           << formatName(image.format()) << ", " << image.dataSize() << " bytes)";
}
