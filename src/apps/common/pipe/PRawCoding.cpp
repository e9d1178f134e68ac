// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PRawCoding.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// How a format is called elsewhere, and its bytes in their order.
struct PixelNames {
    QString format; ///< as FFmpeg spells its pixel formats
    QString channels;
};

PixelNames toNames(PDIP::ColorFormat format) {
    switch (format) {
    case PDIP::ColorFormat::Gray:
        return {u"gray"_qs, u"Y"_qs};
    case PDIP::ColorFormat::Bgr:
        return {u"bgr24"_qs, u"BGR"_qs};
    case PDIP::ColorFormat::Xrgb:
        return {u"rgb0"_qs, u"RGBX"_qs};
    case PDIP::ColorFormat::BgrX:
        return {u"bgr0"_qs, u"BGRX"_qs};
    }
    return {};
}

} // namespace

QByteArray PRawCoding::makeHeader(const PImageHeader& first, std::optional<double> rate) const {
    if (!m_camera)
        return {};
    const PixelNames names = toNames(first.format());
    const auto frameBytes =
        qint64(first.width()) * qint64(first.height()) * qint64(first.bytesPerPixel());
    QJsonObject header{{u"width"_qs, qint64(first.width())},
                       {u"height"_qs, qint64(first.height())},
                       {u"pixelFormat"_qs, names.format},
                       {u"channels"_qs, names.channels},
                       {u"bytesPerPixel"_qs, qint64(first.bytesPerPixel())},
                       {u"frameBytes"_qs, frameBytes},
                       {u"camera"_qs, m_camera->id},
                       {u"simulated"_qs, m_camera->simulated}};
    if (rate)
        header.insert(u"fps"_qs, *rate);
    return QJsonDocument(header).toJson(QJsonDocument::Compact) + '\n';
}
