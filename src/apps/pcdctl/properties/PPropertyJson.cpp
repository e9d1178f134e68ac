// SPDX-License-Identifier: MIT
#include <apps/pcdctl/properties/PPropertyJson.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>

namespace {

using IntRange = PMinMaxRange<int>;
using RealRange = PMinMaxRange<double>;

QJsonObject toJson(const QRect& region) {
    return {{u"x"_qs, region.x()},
            {u"y"_qs, region.y()},
            {u"width"_qs, region.width()},
            {u"height"_qs, region.height()}};
}

template <typename Number>
QJsonObject toJson(const PMinMaxRange<Number>& range) {
    return {
        {u"minimum"_qs, range.minimum}, {u"maximum"_qs, range.maximum}, {u"step"_qs, range.step}};
}

QJsonObject toJson(const PScanAreaRange& range) {
    return {{u"bounds"_qs, toJson(range.bounds)},       {u"minimumWidth"_qs, range.minimumWidth},
            {u"minimumHeight"_qs, range.minimumHeight}, {u"widthStep"_qs, range.widthStep},
            {u"heightStep"_qs, range.heightStep},       {u"offsetStep"_qs, range.offsetStep}};
}

QJsonArray toJson(const PEnumeration& choices) {
    QJsonArray array;
    for (const PEnumerationItem& item : choices.items()) {
        array.append(QJsonObject{{u"name"_qs, item.name},
                                 {u"title"_qs, item.title},
                                 {u"data"_qs, QString::fromLatin1(item.data)}});
    }
    return array;
}

void insertRange(QJsonObject& object, const QVariant& range) {
    if (range.metaType() == QMetaType::fromType<IntRange>())
        object.insert(u"range"_qs, toJson(range.value<IntRange>()));
    else if (range.metaType() == QMetaType::fromType<RealRange>())
        object.insert(u"range"_qs, toJson(range.value<RealRange>()));
    else if (range.metaType() == QMetaType::fromType<PEnumeration>())
        object.insert(u"choices"_qs, toJson(range.value<PEnumeration>()));
    else if (range.metaType() == QMetaType::fromType<PScanAreaRange>())
        object.insert(u"area"_qs, toJson(range.value<PScanAreaRange>()));
}

QJsonObject toFields(const QVariant& composite) {
    QJsonObject object;
    for (const QString& name : PCompositeFields::names(composite))
        object.insert(name, QJsonValue::fromVariant(PCompositeFields::read(composite, name)));
    return object;
}

} // namespace

QJsonValue PPropertyJson::value(const QVariant& value, const QVariant& range) {
    if (value.isValid() && range.metaType() == QMetaType::fromType<PEnumeration>())
        return range.value<PEnumeration>().getItem(value.toUuid()).name;
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QJsonValue::Null;
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
        return value.toInt();
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::QRect:
        return toJson(value.toRect());
    default:
        return PCompositeFields::isComposite(value) ? QJsonValue(toFields(value))
                                                    : PPropertyText::ofValue(value, range);
    }
}

QJsonObject PPropertyJson::values(const QList<PDeviceProperty*>& properties) {
    QJsonObject object;
    for (const PDeviceProperty* property : properties) {
        object.insert(QString::fromLatin1(property->id()),
                      value(property->valueInner(), property->rangeInner()));
    }
    return object;
}

QJsonObject PPropertyJson::description(const PDeviceProperty& property) {
    const QVariant range = property.rangeInner();
    QJsonObject object{{u"id"_qs, QString::fromLatin1(property.id())},
                       {u"title"_qs, property.title()},
                       {u"type"_qs, typeName(property)},
                       {u"typeCode"_qs, int(property.type())},
                       {u"value"_qs, value(property.valueInner(), range)},
                       {u"serializable"_qs, property.isSerializable()}};
    insertRange(object, range);
    if (property.defaultValue().isValid())
        object.insert(u"default"_qs, value(property.defaultValue(), range));
    if (!unitName(property).isEmpty())
        object.insert(u"unit"_qs, unitName(property));
    if (!property.description().isEmpty())
        object.insert(u"description"_qs, property.description());
    return object;
}

QJsonArray PPropertyJson::reportItems(const QList<PDeviceProfileReport::Item>& items) {
    QJsonArray array;
    for (const PDeviceProfileReport::Item& item : items) {
        array.append(
            QJsonObject{{u"id"_qs, QString::fromUtf8(item.id)}, {u"reason"_qs, item.reason}});
    }
    return array;
}

QStringList PPropertyJson::reportLines(const QList<PDeviceProfileReport::Item>& items) {
    QStringList lines;
    for (const PDeviceProfileReport::Item& item : items)
        lines.append(
            u"%1: %2"_qs.arg(PPropertyText::shortened(QString::fromUtf8(item.id)), item.reason));
    return lines;
}

QJsonArray PPropertyJson::ids(const QList<QByteArray>& ids) {
    QJsonArray array;
    for (const QByteArray& id : ids)
        array.append(QString::fromUtf8(id));
    return array;
}

QString PPropertyJson::typeName(const PDeviceProperty& property) {
    switch (property.type()) {
    case PCD::DevicePropertyType::Custom:
        return u"custom"_qs;
    case PCD::DevicePropertyType::Integer:
        return u"integer"_qs;
    case PCD::DevicePropertyType::Duration:
        return u"duration"_qs;
    case PCD::DevicePropertyType::Switch:
        return u"switch"_qs;
    case PCD::DevicePropertyType::Choice:
        return u"choice"_qs;
    case PCD::DevicePropertyType::Action:
        return u"action"_qs;
    case PCD::DevicePropertyType::ScanArea:
        return u"area"_qs;
    }
    return u"unknown"_qs;
}

QString PPropertyJson::unitName(const PDeviceProperty& property) {
    return property.unit() == ValueUnits::Microsecond ? u"µs"_qs : QString();
}
