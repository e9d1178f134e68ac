// SPDX-License-Identifier: MIT
#include <PCdGui/PGroupBoxPicture.h>

#include <QPainter>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOptionGroupBox>

#include <cmath>

namespace {

/// Of all that the picture depends on. A hash, because it is made at each repaint.
QString makeKey(const QWidget& box, const QStyleOptionGroupBox& option) {
    const std::size_t hash = qHashMulti(
        0, quintptr(box.style()), option.rect.width(), option.rect.height(), int(option.state),
        option.palette.cacheKey(), box.devicePixelRatio(), box.font(), option.text);
    return u"PGroupBoxPicture-"_qs + QString::number(hash, 16);
}

QPixmap draw(const QWidget& box, QStyleOptionGroupBox option) {
    QPixmap picture(option.rect.size() * box.devicePixelRatio());
    picture.setDevicePixelRatio(box.devicePixelRatio());
    picture.fill(Qt::transparent);
    option.subControls &= ~QStyle::SC_GroupBoxLabel;
    QPainter painter(&picture);
    box.style()->drawComplexControl(QStyle::CC_GroupBox, &option, &painter, &box);
    return picture;
}

} // namespace

bool PGroupBoxPicture::isExact(const QWidget& box) {
    const double scale = box.devicePixelRatio();
    return std::floor(scale) == scale; // else its edges lie between pixels
}

QPixmap PGroupBoxPicture::find(const QWidget& box, const QStyleOptionGroupBox& option) {
    const QString key = makeKey(box, option);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = draw(box, option);
        QPixmapCache::insert(key, picture);
    }
    return picture;
}
