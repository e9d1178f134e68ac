// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <gtest/gtest.h>

#include <tiffio.h>

#include <memory>

/// A TIFF file as libtiff reads it, directory by directory. One thread.
class TiffReadBack {
public:
    /// Opens the file at its first directory, with its strips as they are in the file ("c").
    explicit TiffReadBack(const QString& path)
        : m_tiff(TIFFOpen(path.toLocal8Bit().constData(), "rc")) {}

    bool isOpen() const { return m_tiff != nullptr; }
    int pictures() const { return isOpen() ? int(TIFFNumberOfDirectories(m_tiff.get())) : 0; }
    bool isBig() const { return TIFFIsBigTIFF(m_tiff.get()) != 0; }
    void select(int picture) const {
        EXPECT_EQ(TIFFSetDirectory(m_tiff.get(), tdir_t(picture)), 1) << picture;
    }

    template <typename T = uint16_t>
    T field(uint32_t tag) const {
        T value{};
        EXPECT_EQ(TIFFGetFieldDefaulted(m_tiff.get(), tag, &value), 1) << tag;
        return value;
    }
    QByteArray description() const { return field<const char*>(TIFFTAG_IMAGEDESCRIPTION); }
    int width() const { return int(field<uint32_t>(TIFFTAG_IMAGEWIDTH)); }
    int height() const { return int(field<uint32_t>(TIFFTAG_IMAGELENGTH)); }

    /// All rows of the picture, one after the other, without padding.
    QByteArray rows() const {
        QByteArray all;
        QByteArray row(qsizetype(TIFFScanlineSize(m_tiff.get())), '\0');
        for (int y = 0; y < height(); ++y) {
            EXPECT_EQ(TIFFReadScanline(m_tiff.get(), row.data(), uint32_t(y)), 1);
            all.append(row);
        }
        return all;
    }

    /// The picture, which must be RGB, as an image.
    QImage image() const {
        EXPECT_EQ(field(TIFFTAG_SAMPLESPERPIXEL), 3);
        const QByteArray bytes = rows();
        return QImage(reinterpret_cast<const uchar*>(bytes.constData()), width(), height(),
                      qsizetype(width()) * 3, QImage::Format_RGB888)
            .copy();
    }

private:
    struct Close {
        void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    };
    std::unique_ptr<TIFF, Close> m_tiff;
};
