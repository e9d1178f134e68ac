// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PPixelValue.h>

#include <apps/pcdview/view/PPixelLayout.h>

#include <QRect>

std::optional<PPixelValue> PPixelValue::of(const PImage& image, QPoint at) {
    const PImageHeader header = image.header();
    if (!QRect(0, 0, int(header.width()), int(header.height())).contains(at))
        return std::nullopt;
    const unsigned char* const pixel = image.rawData(PDIP::AccessMode::Read).constData() +
                                       std::size_t(at.y()) * header.bytesPerLine() +
                                       std::size_t(at.x()) * header.bytesPerPixel();
    return withPixelLayout(header.format(), [&](auto layout) {
        using Layout = decltype(layout);
        return PPixelValue{at, pixel[Layout::red], pixel[Layout::green], pixel[Layout::blue],
                           Layout::isGrey};
    });
}

QString PPixelValue::text() const {
    const QString place = u"x %1, y %2: "_qs.arg(QString::number(at.x()), QString::number(at.y()));
    if (isGrey)
        return place + QString::number(green);
    return place + u"R %1  G %2  B %3"_qs.arg(QString::number(red), QString::number(green),
                                              QString::number(blue));
}
