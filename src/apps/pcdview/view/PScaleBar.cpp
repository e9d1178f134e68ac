// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PScaleBar.h>

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace {

constexpr double outerMargin = 16;
constexpr double padding = 8;
constexpr double thickness = 4;

/// The largest of 1, 2 and 5 times a power of ten that does not exceed the number.
double roundedDown(double number) {
    const double power = std::pow(10, std::floor(std::log10(number)));
    const double digits = number / power;
    return power * (digits >= 5 ? 5 : digits >= 2 ? 2 : 1);
}

QString withUnit(double number, const QString& unit) {
    return QString::number(number, 'g', 6) + u'\u00a0' + unit;
}

} // namespace

PScaleBar PScaleBar::of(double micrometresAPixel, double atMost) {
    if (!(micrometresAPixel > 0) || !(atMost > 0))
        return {};
    const double length = roundedDown(micrometresAPixel * atMost);
    return {length, length / micrometresAPixel};
}

QString PScaleBar::text() const {
    if (micrometres >= 1000)
        return withUnit(micrometres / 1000, u"mm"_qs);
    if (micrometres < 1)
        return withUnit(micrometres * 1000, u"nm"_qs);
    return withUnit(micrometres, u"µm"_qs);
}

void PScaleBar::paint(QPainter& painter, const QRectF& area) const {
    if (pixels <= 0)
        return;
    const QFontMetricsF metrics(painter.font());
    const double width = std::max(pixels, metrics.horizontalAdvance(text())) + 2 * padding;
    const double height = metrics.height() + thickness + 2 * padding;
    const QRectF box(area.left() + outerMargin, area.bottom() - outerMargin - height, width,
                     height);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 150));
    painter.drawRoundedRect(box, 4, 4);
    painter.fillRect(QRectF(box.center().x() - pixels / 2, box.bottom() - padding - thickness,
                            pixels, thickness),
                     Qt::white);
    painter.setPen(Qt::white);
    painter.drawText(box.adjusted(0, padding / 2, 0, 0), Qt::AlignHCenter | Qt::AlignTop, text());
}
