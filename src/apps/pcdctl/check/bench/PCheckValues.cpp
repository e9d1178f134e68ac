// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckValues.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PPropertyEncoding.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using IntRange = PMinMaxRange<int>;
using RealRange = PMinMaxRange<double>;

constexpr double roundingShare = 0.02; // of a number, by the hardware

template <typename Range>
bool isRange(const QVariant& range) {
    return range.metaType() == QMetaType::fromType<Range>();
}

template <typename Range>
bool isOrdered(const Range& range) {
    return range != Range{} && range.minimum <= range.maximum && range.step >= 0;
}

bool hasRegions(const PScanAreaRange& range) {
    return !range.bounds.isEmpty() && range.minimumWidth <= range.bounds.width() &&
           range.minimumHeight <= range.bounds.height();
}

QList<QVariant> findOutside(const IntRange& range) {
    QList<QVariant> values;
    if (range.minimum > std::numeric_limits<int>::min())
        values.append(range.minimum - 1);
    if (range.maximum < std::numeric_limits<int>::max())
        values.append(range.maximum + 1);
    return values;
}

/// A number on a step in the middle.
QVariant toMiddle(const IntRange& range) {
    const qint64 step = qMax(1, range.step);
    const qint64 half = (qint64(range.maximum) - range.minimum) / 2;
    return int(range.minimum + half / step * step);
}

/// Half of the area, from where steps allow it.
QVariant toHalf(const PScanAreaRange& range) {
    const auto onStep = [](int value, int step) {
        return step <= 1 ? value : value - value % step;
    };
    const QRect all = range.bounds;
    const int width = qMax(range.minimumWidth, onStep(all.width() / 2, range.widthStep));
    const int height = qMax(range.minimumHeight, onStep(all.height() / 2, range.heightStep));
    return QRect(onStep(all.left() + all.width() / 4, range.offsetStep),
                 onStep(all.top() + all.height() / 4, range.offsetStep), width, height);
}

QList<QVariant> collectItems(const PEnumeration& choices) {
    QList<QVariant> ids;
    for (const PEnumerationItem& item : choices.items())
        ids.append(QVariant(item.id));
    return ids;
}

/// True if the hardware may have made the one number of the other.
bool isClose(double sent, double has, double betweenSteps) {
    return std::abs(sent - has) <= std::max(betweenSteps, std::abs(sent) * roundingShare);
}

} // namespace

bool PCheckValues::isUsable(const QVariant& range) {
    if (isRange<PEnumeration>(range))
        return !range.value<PEnumeration>().items().isEmpty();
    if (isRange<IntRange>(range))
        return isOrdered(range.value<IntRange>());
    if (isRange<RealRange>(range))
        return isOrdered(range.value<RealRange>());
    return isRange<PScanAreaRange>(range) && hasRegions(range.value<PScanAreaRange>());
}

QList<QVariant> PCheckValues::inside(const PDeviceProperty& property) {
    const QVariant range = property.rangeInner();
    if (property.valueInner().typeId() == QMetaType::Bool)
        return {true, false};
    if (!isUsable(range))
        return property.valueInner().isValid() ? QList<QVariant>{property.valueInner()}
                                               : QList<QVariant>();
    if (isRange<PEnumeration>(range))
        return collectItems(range.value<PEnumeration>());
    if (isRange<IntRange>(range))
        return {toMiddle(range.value<IntRange>())};
    if (isRange<PScanAreaRange>(range))
        return {toHalf(range.value<PScanAreaRange>())};
    const auto limits = range.value<RealRange>();
    return {(limits.minimum + limits.maximum) / 2};
}

QList<QVariant> PCheckValues::ends(const PDeviceProperty& property) {
    const QVariant range = property.rangeInner();
    if (!isUsable(range))
        return {};
    if (isRange<RealRange>(range))
        return {range.value<RealRange>().minimum, range.value<RealRange>().maximum};
    if (isRange<PScanAreaRange>(range))
        return {range.value<PScanAreaRange>().bounds};
    if (!isRange<IntRange>(range))
        return {};
    const auto limits = range.value<IntRange>();
    const qint64 step = qMax(1, limits.step);
    const qint64 steps = (qint64(limits.maximum) - limits.minimum) / step;
    return {limits.minimum, int(limits.minimum + steps * step)};
}

QList<QVariant> PCheckValues::outside(const PDeviceProperty& property) {
    const QVariant range = property.rangeInner();
    if (!isUsable(range))
        return {};
    if (isRange<IntRange>(range))
        return findOutside(range.value<IntRange>());
    if (isRange<PEnumeration>(range))
        return {QVariant(QUuid(0xffffffff, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10))};
    if (isRange<PScanAreaRange>(range)) {
        const QRect bounds = range.value<PScanAreaRange>().bounds;
        return {QRect(bounds.topLeft(), bounds.size() * 2)};
    }
    const auto limits = range.value<RealRange>();
    const double beyond = std::max(1.0, limits.maximum - limits.minimum);
    return {limits.minimum - beyond, limits.maximum + beyond};
}

QVariant PCheckValues::other(const PDeviceProperty& property) {
    for (const QVariant& value : inside(property) + ends(property)) {
        if (!isSame(value, property.valueInner(), property.rangeInner()))
            return value;
    }
    return {};
}

bool PCheckValues::areComparable(const PDeviceProperty& property) {
    return PPropertyEncoding::toForm(property.valueInner(), property.rangeInner()).isValid();
}

bool PCheckValues::isTaken(const QVariant& sent, const QVariant& has, const QVariant& range) {
    if (isRange<IntRange>(range) && has.typeId() == QMetaType::Int)
        return isClose(sent.toInt(), has.toInt(), qMax(0, range.value<IntRange>().step - 1));
    if (isRange<RealRange>(range) && has.typeId() == QMetaType::Double)
        return isClose(sent.toDouble(), has.toDouble(), range.value<RealRange>().step);
    return isSame(sent, has, range);
}

bool PCheckValues::isZero(const QVariant& value, const QVariant& range) {
    if (isRange<PEnumeration>(range))
        return value.toUuid() == range.value<PEnumeration>().items().value(0).id;
    if (value.typeId() == QMetaType::QRect)
        return value.toRect().isEmpty();
    return !PPropertyEncoding::isComposite(value) && value.toDouble() == 0;
}

bool PCheckValues::isSame(const QVariant& a, const QVariant& b, const QVariant& range) {
    // By the id, not the name: names of a driver's choices may be wrong.
    if (a.typeId() == QMetaType::QUuid && b.typeId() == QMetaType::QUuid)
        return a.toUuid() == b.toUuid();
    return PPropertyEncoding::isSame(a, b, range);
}

QString PCheckValues::describe(const QVariant& sent, const PDeviceProperty::Reading& has) {
    return u"sent %1, the camera has %2"_qs.arg(PPropertyText::ofValue(sent, has.range),
                                                PPropertyText::ofValue(has.value, has.range));
}

bool PCheckValues::isAction(const PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Action;
}

bool PCheckValues::isThermal(const PDeviceProperty& property) {
    const PRoleBindings roles = PPropertyRoles::of(property);
    return std::any_of(roles.begin(), roles.end(), [](const PRoleBinding& binding) {
        return binding.role == PRole::CoolerOn || binding.role == PRole::CoolerTarget ||
               binding.role == PRole::FanOn || binding.role == PRole::FanLevel;
    });
}

bool PCheckValues::isTime(const PDeviceProperty& property) {
    const PRoleBindings roles = PPropertyRoles::of(property);
    return property.type() == PCD::DevicePropertyType::Duration ||
           std::any_of(roles.begin(), roles.end(), [](const PRoleBinding& binding) {
               return binding.role == PRole::ExposureTime;
           });
}
