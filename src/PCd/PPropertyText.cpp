// SPDX-License-Identifier: MIT
#include <PCd/PPropertyText.h>

#include <PCd/PDeviceProperty.h>
#include <PCd/PEnumeration.h>

#include <optional>

namespace {

QVariant toSwitch(const QString& text) {
    for (const char* on : {"on", "true", "yes", "1"}) {
        if (text.compare(QLatin1String(on), Qt::CaseInsensitive) == 0)
            return true;
    }
    for (const char* off : {"off", "false", "no", "0"}) {
        if (text.compare(QLatin1String(off), Qt::CaseInsensitive) == 0)
            return false;
    }
    return QVariant();
}

QVariant toNumber(const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? QVariant(number) : QVariant();
}

/// By title first, then by name, then by what the device understands: "0°", "0", "90".
QVariant toChoice(const QString& text, const PEnumeration& choices) {
    const auto find = [&](const auto& textOf) -> QVariant {
        for (const PEnumerationItem& item : choices.items()) {
            if (textOf(item).compare(text, Qt::CaseInsensitive) == 0)
                return QVariant::fromValue(item.id);
        }
        return QVariant();
    };
    QVariant found = find([](const PEnumerationItem& item) { return item.title; });
    if (!found.isValid())
        found = find([](const PEnumerationItem& item) { return item.name; });
    if (!found.isValid())
        found = find([](const PEnumerationItem& item) { return QString::fromLatin1(item.data); });
    return found;
}

QVariant toRegion(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(','));
    QList<int> numbers;
    for (const QString& part : parts) {
        bool isNumber = false;
        numbers.append(part.trimmed().toInt(&isNumber));
        if (!isNumber)
            return QVariant();
    }
    return numbers.size() == 4 ? QVariant(QRect(numbers[0], numbers[1], numbers[2], numbers[3]))
                               : QVariant();
}

} // namespace

QString PPropertyText::ofRegion(const QRect& region) {
    return QStringLiteral("%1,%2,%3,%4")
        .arg(region.x())
        .arg(region.y())
        .arg(region.width())
        .arg(region.height());
}

QString PPropertyText::ofValue(const QVariant& value, const QVariant& range) {
    if (range.metaType() == QMetaType::fromType<PEnumeration>() &&
        value.typeId() == QMetaType::QUuid) {
        const PEnumerationItem item = range.value<PEnumeration>().getItem(value.toUuid());
        return item.title.isEmpty() ? value.toString() : item.title;
    }
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("on") : QStringLiteral("off");
    if (value.typeId() == QMetaType::QRect)
        return ofRegion(value.toRect());
    if (value.canConvert<QString>())
        return value.toString();
    return QStringLiteral("<%1>").arg(QString::fromLatin1(value.metaType().name()));
}

QVariant PPropertyText::toValue(const QString& text, const PDeviceProperty& property) {
    const QString trimmed = text.trimmed();
    const QVariant range = property.rangeInner();
    if (range.metaType() == QMetaType::fromType<PEnumeration>())
        return toChoice(trimmed, range.value<PEnumeration>());
    switch (property.valueInner().typeId()) {
    case QMetaType::Bool:
        return toSwitch(trimmed);
    case QMetaType::Int:
        return toNumber(trimmed);
    case QMetaType::QRect:
        return toRegion(trimmed);
    default:
        return QVariant();
    }
}
