// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PRegionMap.h>

#include <PCd/device/PDeviceRoles.h>

#include <QTransform>

#include <algorithm>
#include <numeric>

namespace {

int atLeastOne(int step) {
    return std::max(step, 1);
}

/// One axis of a region, from `begin` on.
struct Span {
    int begin = 0;
    int length = 0;
};

Span snappedSpan(Span wanted, Span bounds, int smallest, int lengthStep, int offsetStep) {
    const int step = atLeastOne(lengthStep);
    const int offsets = std::lcm(atLeastOne(offsetStep), 2);
    const int most = bounds.length / step * step;
    const int least = (smallest + step - 1) / step * step;
    if (most <= 0 || least > most)
        return {};
    const int length =
        std::clamp((wanted.length + step / 2) / step * step, std::max(least, step), most);
    const int room = (bounds.length - length) / offsets * offsets;
    const int offset = wanted.begin - bounds.begin;
    return {bounds.begin + std::clamp(offset / offsets * offsets, 0, room), length};
}

} // namespace

PRegionMap PRegionMap::of(const PDevice& device, QSize picture) {
    PRegionMap map;
    map.picture = picture;
    const PDeviceRoles roles = PDeviceRoles::of(device);
    map.onSensor = roles.part(PRole::Region).toRect();
    map.rotation = int(roles.number(PRole::Rotation).value_or(0));
    map.isFlippedAcross = roles.isOn(PRole::FlipAcross);
    map.isFlippedDown = roles.isOn(PRole::FlipDown);
    return map;
}

QRect PRegionMap::toSensor(const QRect& inPicture) const {
    // From the unit square of the sensor's region to the picture, step by step as in the camera.
    QTransform transform;
    transform.translate(0.5, 0.5);
    transform.rotate(rotation);
    transform.scale(isFlippedAcross ? -1 : 1, isFlippedDown ? -1 : 1);
    transform.translate(-0.5, -0.5);
    const QRectF unit(
        double(inPicture.x()) / picture.width(), double(inPicture.y()) / picture.height(),
        double(inPicture.width()) / picture.width(), double(inPicture.height()) / picture.height());
    const QRectF share = transform.inverted().mapRect(unit);
    const QRectF region(onSensor.x() + share.x() * onSensor.width(),
                        onSensor.y() + share.y() * onSensor.height(),
                        share.width() * onSensor.width(), share.height() * onSensor.height());
    // Rotations are not exact in floating point: a whole number must not grow by a pixel.
    constexpr double slack = 1e-6;
    return region.adjusted(slack, slack, -slack, -slack).toAlignedRect();
}

QRect PRegionMap::snapped(const QRect& wanted, const PScanAreaRange& range) {
    const QRect bounds = range.bounds;
    const Span across = snappedSpan({wanted.x(), wanted.width()}, {bounds.x(), bounds.width()},
                                    range.minimumWidth, range.widthStep, range.offsetStep);
    const Span down = snappedSpan({wanted.y(), wanted.height()}, {bounds.y(), bounds.height()},
                                  range.minimumHeight, range.heightStep, range.offsetStep);
    return {across.begin, down.begin, across.length, down.length};
}
