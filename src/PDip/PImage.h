// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImageAttachment.h>
#include <PDip/PImageHeader.h>

#include <PCore/PExport.h>

#include <QExplicitlySharedDataPointer>
#include <QImage>
#include <QMap>
#include <QMetaType>
#include <QVariant>

#include <memory>

class QDebug;

namespace PDIP {

/// The pixel memory of an image as it was opened by PImage::rawData(). Valid while that image lives
/// and is neither assigned to nor opened for writing again; writing through it after the image was
/// copied changes the copy too.
class PCD_EXPORT ImageRawData {
public:
    ImageRawData() = default;
    ImageRawData(unsigned char* data, std::size_t size, AccessMode mode)
        : m_data(data)
        , m_size(size)
        , m_mode(mode) {}

    /// The first byte; null for an empty image.
    const unsigned char* constData() const { return m_data; }
    /// The same for writing. Throws dip_exception("invalid mode for access") if opened for reading.
    unsigned char* data() const;
    std::size_t size() const { return m_size; }

private:
    unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
    AccessMode m_mode = AccessMode::Read;
};

} // namespace PDIP

/// An implicitly shared image: copying costs nothing, and changing a copy does not affect the
/// others. Different objects may be used on different threads, even if they share pixels.
class PCD_EXPORT PImage {
public:
    PImage(); ///< An empty image.
    PImage(const PImage&);
    PImage(PImage&&) noexcept;
    PImage& operator=(const PImage&);
    PImage& operator=(PImage&&) noexcept;
    ~PImage();

    /// Makes it an image of this geometry with undefined pixels and no meta information. Width and
    /// height in pixels. Returns false, leaving an empty image, if the geometry is not valid or
    /// memory is exhausted.
    bool create(long width, long height, PDIP::ColorFormat format,
                PDIP::Channel channel = PDIP::Channel::UInt8,
                PDIP::Origin origin = PDIP::Origin::TopLeft,
                PDIP::RowsAlign align = PDIP::RowsAlign::FourBytes);
    bool create(const PImageHeader& header);

    /// Makes it an image of this geometry and copies header.dataSize() bytes into it, keeping the
    /// meta information. Unshared memory of the right size is reused. Returns false as create()
    /// does, or if data is null.
    bool set(const unsigned char* data, const PImageHeader& header);

    /// True if it has no pixels.
    bool isNull() const;
    /// Its geometry and format; those of a default PImageHeader if it is null. The functions below
    /// give parts of them.
    PImageHeader header() const;
    long width() const { return header().width(); }
    long height() const { return header().height(); }
    PDIP::ColorFormat format() const { return header().format(); }
    PDIP::Channel channelType() const { return header().channelType(); }
    std::size_t dataSize() const { return header().dataSize(); }
    std::size_t bytesPerLine() const { return header().bytesPerLine(); }

    /// Opens the pixel memory. Opening shared pixels for writing detaches them as AccessMode says;
    /// throws std::bad_alloc if memory is exhausted.
    PDIP::ImageRawData rawData(PDIP::AccessMode mode);
    /// Opens it for reading; throws dip_exception("invalid mode for access") for any other mode.
    PDIP::ImageRawData rawData(PDIP::AccessMode mode) const;

    /// Reinterprets the bytes as another format with the same bytes per pixel; false if they
    /// differ.
    bool reinterpretFormat(PDIP::ColorFormat format);

    /// Information about the image besides its pixels, which plugins set for hosts to read.
    void setMetaInformation(const QMap<QString, QVariant>& information);
    QMap<QString, QVariant> metaInformation() const;

    /// Attaches a record, which all copies of the image share (see PImageAttachment).
    /// Pixels stay shared: neither this nor setMetaInformation() ever copies them. create() drops
    /// it, set() keeps it.
    void setAttachment(std::shared_ptr<const PImageAttachment> attachment);
    /// The attached record, or null.
    std::shared_ptr<const PImageAttachment> attachment() const;

    /// The same pixels as a QImage, which shares their memory and keeps it alive. Colours are right
    /// in every format. Null for an empty image.
    QImage toQImage() const;

private:
    class Data;
    Data& ownData();
    bool setGeometry(const PImageHeader& header);
    PDIP::ImageRawData opened(PDIP::AccessMode mode) const;

    QExplicitlySharedDataPointer<Data> d;
};

/// "PImage(2736x1824, Bgr, 14971392 bytes)", or "PImage(null)".
PCD_EXPORT QDebug operator<<(QDebug debug, const PImage& image);

Q_DECLARE_METATYPE(PImage)
