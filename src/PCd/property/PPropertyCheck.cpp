// SPDX-License-Identifier: MIT
#include <PCd/property/PPropertyCheck.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyEncoding.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>
#include <PCore/PPrintableText.h>

namespace {

using IntRange = PMinMaxRange<int>;
using RealRange = PMinMaxRange<double>;

/// All zeros mean that the number has no range (a range of one value has a step).
bool isOpen(const IntRange& range) {
    return range == IntRange{};
}

bool isIn(const IntRange& range, int value) {
    if (isOpen(range))
        return true;
    // In 64 bits: the difference of the ends may exceed an int.
    const qint64 above = qint64(value) - range.minimum;
    return above >= 0 && value <= range.maximum && (range.step <= 1 || above % range.step == 0);
}

/// The step is only for editors: hardly any number is an exact multiple of a fraction.
bool isIn(const RealRange& range, double value) {
    return range == RealRange{} || (value >= range.minimum && value <= range.maximum);
}

bool isMultiple(int value, int step) {
    return step <= 1 || value % step == 0;
}

/// The whole area is a valid region even if its size is not a multiple of the steps.
bool isIn(const PScanAreaRange& range, const QRect& region) {
    if (region.isEmpty() || !range.bounds.contains(region))
        return false;
    return region == range.bounds ||
           (region.width() >= range.minimumWidth && region.height() >= range.minimumHeight &&
            isMultiple(region.width(), range.widthStep) &&
            isMultiple(region.height(), range.heightStep) &&
            isMultiple(region.left(), range.offsetStep) &&
            isMultiple(region.top(), range.offsetStep));
}

bool hasItem(const PEnumeration& choices, const QUuid& id) {
    for (const PEnumerationItem& item : choices.items()) {
        if (item.id == id)
            return true;
    }
    return false;
}

/// A switch is on or off, also while the device does not report which.
QMetaType findType(const PDeviceProperty& property) {
    const QMetaType type = property.valueInner().metaType();
    const bool isUnreadSwitch =
        !type.isValid() && property.type() == PCD::DevicePropertyType::Switch;
    return isUnreadSwitch ? QMetaType(QMetaType::Bool) : type;
}

/// `type`: of values without a range.
bool isTaken(const QVariant& value, QMetaType type, const QVariant& range) {
    if (range.metaType() == QMetaType::fromType<IntRange>())
        return value.typeId() == QMetaType::Int && isIn(range.value<IntRange>(), value.toInt());
    if (range.metaType() == QMetaType::fromType<RealRange>())
        return value.typeId() == QMetaType::Double &&
               isIn(range.value<RealRange>(), value.toDouble());
    if (range.metaType() == QMetaType::fromType<PEnumeration>())
        return value.typeId() == QMetaType::QUuid &&
               hasItem(range.value<PEnumeration>(), value.toUuid());
    if (range.metaType() == QMetaType::fromType<PScanAreaRange>())
        return value.typeId() == QMetaType::QRect &&
               isIn(range.value<PScanAreaRange>(), value.toRect());
    return value.isValid() && value.metaType() == type;
}

QString expectedNumber(const IntRange& range) {
    if (isOpen(range))
        return PPropertyCheck::tr("a whole number");
    const QString text = PPropertyCheck::tr("a whole number from %1 to %2")
                             .arg(QString::number(range.minimum), QString::number(range.maximum));
    return range.step > 1
               ? PPropertyCheck::tr("%1 in steps of %2").arg(text, QString::number(range.step))
               : text;
}

QString expectedNumber(const RealRange& range) {
    return range == RealRange{}
               ? PPropertyCheck::tr("a number")
               : PPropertyCheck::tr("a number from %1 to %2")
                     .arg(QString::number(range.minimum), QString::number(range.maximum));
}

QString expectedChoice(const PEnumeration& choices) {
    QStringList names;
    for (const PEnumerationItem& item : choices.items())
        names.append(u'"' + PPrintableText::toLine(item.title) + u'"');
    if (names.isEmpty())
        return PPropertyCheck::tr("a choice, but the camera reports none");
    return PPropertyCheck::tr("one of %1").arg(names.join(u", "_qs));
}

QString expectedRegion(const PScanAreaRange& range) {
    if (range.bounds.isEmpty())
        return PPropertyCheck::tr("a region, but the camera reports no area for it");
    return PPropertyCheck::tr("a region x,y,width,height inside %1, at least %2 x %3 pixels, in "
                              "steps of %4 x %5, or the whole area")
        .arg(PPropertyText::ofRegion(range.bounds), QString::number(range.minimumWidth),
             QString::number(range.minimumHeight), QString::number(qMax(1, range.widthStep)),
             QString::number(qMax(1, range.heightStep)));
}

} // namespace

PStatus PPropertyCheck::check(const PDeviceProperty& property, const QVariant& value) {
    return check(property, value, property.rangeInner());
}

PStatus PPropertyCheck::check(const PDeviceProperty& property, const QVariant& value,
                              const QVariant& range) {
    const QString name = QString::fromLatin1(property.id());
    if (property.type() == PCD::DevicePropertyType::Action)
        return PStatus::failure(tr("\"%1\" is an action and takes no value").arg(name));
    if (isTaken(value, findType(property), range))
        return PStatus::Ok;
    return PStatus::failure(
        tr("\"%1\" cannot be %2: expected %3")
            .arg(name, PPropertyText::ofValue(value, range), expectation(property, range)));
}

QString PPropertyCheck::expectation(const PDeviceProperty& property) {
    return expectation(property, property.rangeInner());
}

QString PPropertyCheck::expectation(const PDeviceProperty& property, const QVariant& range) {
    if (range.metaType() == QMetaType::fromType<IntRange>())
        return expectedNumber(range.value<IntRange>());
    if (range.metaType() == QMetaType::fromType<RealRange>())
        return expectedNumber(range.value<RealRange>());
    if (range.metaType() == QMetaType::fromType<PEnumeration>())
        return expectedChoice(range.value<PEnumeration>());
    if (range.metaType() == QMetaType::fromType<PScanAreaRange>())
        return expectedRegion(range.value<PScanAreaRange>());
    if (findType(property).id() == QMetaType::Bool)
        return tr("on or off");
    if (PCompositeFields::isComposite(property.valueInner()))
        return tr("one field at a time, %1.FIELD=VALUE with one of the fields %2")
            .arg(QString::fromLatin1(property.id()),
                 PCompositeFields::names(property.valueInner()).join(u", "_qs));
    if (!property.valueInner().isValid())
        return tr("a value, but the camera does not report it");
    return tr("a value of type %1")
        .arg(QString::fromLatin1(property.valueInner().metaType().name()));
}

PPropertyCheck::Outcome PPropertyCheck::send(PDeviceProperty& property, const QVariant& value) {
    property.setValue(value);
    if (!property.update(false))
        return Outcome::Unread;
    return PPropertyEncoding::isSame(property.valueInner(), value, property.rangeInner())
               ? Outcome::Taken
               : Outcome::Refused;
}

bool PPropertyCheck::setAndVerify(PDeviceProperty& property, const QVariant& value) {
    return send(property, value) == Outcome::Taken;
}
