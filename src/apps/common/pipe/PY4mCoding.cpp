// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PY4mCoding.h>

#include <cmath>

namespace {

// As the manual page yuv4mpeg(5) of the MJPEG tools describes them. The range is FFmpeg's
// extension: without it, readers take colours for limited, and differ about grey.
const QByteArray greyTags = "Cmono XCOLORRANGE=FULL";
const QByteArray quarterTags = "C420jpeg XCOLORRANGE=LIMITED"; // samples in the middle of 2x2
const QByteArray eachTags = "C444 XCOLORRANGE=LIMITED";

/// A measured rate as a fraction: a whole number if it is one but for the measurement's error.
QByteArray toFraction(std::optional<double> rate) {
    constexpr double error = 0.02;
    constexpr int parts = 1000;
    if (!rate || std::llround(*rate * parts) < 1)
        return "0:0"; // unknown
    const double whole = std::round(*rate);
    if (whole >= 1 && std::abs(*rate - whole) <= error * whole)
        return QByteArray::number(std::llround(whole)) + ":1";
    return QByteArray::number(std::llround(*rate * parts)) + ':' + QByteArray::number(parts);
}

} // namespace

QByteArray PY4mCoding::makeHeader(const PImageHeader& first, std::optional<double> rate) const {
    const bool isGrey = first.format() == PDIP::ColorFormat::Gray;
    const QByteArray colourTags = m_chroma == PYuvConversion::Chroma::Each ? eachTags : quarterTags;
    return "YUV4MPEG2 W" + QByteArray::number(qint64(first.width())) + " H" +
           QByteArray::number(qint64(first.height())) + " F" + toFraction(rate) + " Ip A1:1 " +
           (isGrey ? greyTags : colourTags) + '\n';
}

PByteView PY4mCoding::encode(const PImage& image) {
    if (image.format() == PDIP::ColorFormat::Gray)
        return m_rows.pack(image);
    m_planes.resize(PYuvConversion::planesSize(image.header(), m_chroma));
    PYuvConversion::convert(image, m_chroma, m_planes.data());
    return {m_planes.data(), m_planes.size()};
}
