// SPDX-License-Identifier: MIT
#include <apps/pcdview/icons/PActionIcon.h>

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>

namespace {

constexpr int solidAlpha = 128;        // alpha; the colours of fainter pixels are rounded too much
constexpr int sameGrey = 24;           // of 255: shades that look the same
constexpr qreal disabledOpacity = 0.4; // of what cannot be used now
// Every icon of the program's own is drawn for the large grid, most also for the small one.
constexpr int smallGrid = 16;
constexpr int largeGrid = 22;

template <typename Draw>
QImage drawn(const QSize& size, Draw draw) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter);
    return image;
}

/// True if all that is seen of it is of one grey.
bool isMonochrome(const QImage& image) {
    int darkest = 255;
    int brightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() < solidAlpha)
                continue;
            const auto [low, high] = std::minmax({color.red(), color.green(), color.blue()});
            darkest = std::min(darkest, low);
            brightest = std::max(brightest, high);
        }
    }
    return brightest - darkest <= sameGrey;
}

QImage drawOfTheme(const QString& name, const QSize& size) {
    return drawn(
        size, [&](QPainter& painter) { QIcon::fromTheme(name).paint(&painter, QRect({}, size)); });
}

/// Drawn for this grid of pixels.
QString ownFile(const QString& name, int grid) {
    return u":/pcdview/icons/breeze/%1/%2.svg"_qs.arg(QString::number(grid), name);
}

/// The one whose grid comes out sharp.
QString ownFile(const QString& name, const QSize& size) {
    const QString small = ownFile(name, smallGrid);
    const bool isSmall = size.width() % smallGrid == 0 && QFile::exists(small);
    return isSmall ? small : ownFile(name, largeGrid);
}

QImage drawOwn(const QString& name, const QSize& size) {
    return drawn(size, [&](QPainter& painter) {
        QSvgRenderer(ownFile(name, size)).render(&painter, QRect({}, size));
    });
}

QString symbolic(const QString& name) {
    return name + u"-symbolic"_qs;
}

/// The theme's icon in colours gives way to its grey one, which goes with those that the theme
/// lacks; not so a grey one, which may be drawn for more sizes.
QString nameInTheme(const QString& name, const QSize& size) {
    const bool hasSymbolic = QIcon::hasThemeIcon(symbolic(name));
    const bool hasIcon = QIcon::hasThemeIcon(name);
    const bool isBest = hasIcon && (!hasSymbolic || isMonochrome(drawOfTheme(name, size)));
    if (isBest)
        return name;
    return hasSymbolic ? symbolic(name) : QString();
}

QImage draw(const QString& name, const QSize& size) {
    const QString inTheme = nameInTheme(name, size);
    return inTheme.isEmpty() ? drawOwn(name, size) : drawOfTheme(inTheme, size);
}

QColor textColor(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Selected)
        return palette.color(QPalette::HighlightedText);
    return palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
                         QPalette::ButtonText);
}

void tint(QImage& image, const QColor& color) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
}

} // namespace

QIcon PActionIcon::make(const QString& name) {
    return QIcon(new PActionIcon(name));
}

PActionIcon::PActionIcon(QString name)
    : m_name(std::move(name)) {
}

void PActionIcon::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) {
    QImage image = draw(m_name, rect.size() * painter->device()->devicePixelRatio());
    const bool isTinted = isMonochrome(image);
    if (isTinted)
        tint(image, textColor(mode));
    painter->save();
    painter->setOpacity(!isTinted && mode == QIcon::Disabled ? disabledOpacity : 1);
    painter->drawImage(rect, image);
    painter->restore();
}

QPixmap PActionIcon::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    return QPixmap::fromImage(
        drawn(size, [&](QPainter& painter) { paint(&painter, QRect({}, size), mode, state); }));
}

bool PActionIcon::isNull() {
    return !QIcon::hasThemeIcon(m_name) && !QIcon::hasThemeIcon(symbolic(m_name)) &&
           !QFile::exists(ownFile(m_name, largeGrid));
}

QIconEngine* PActionIcon::clone() const {
    return new PActionIcon(*this);
}
