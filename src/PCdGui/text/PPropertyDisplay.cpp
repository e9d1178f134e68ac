// SPDX-License-Identifier: MIT
#include <PCdGui/text/PPropertyDisplay.h>

#include <PGui/PTimeText.h>

#include <PCd/PEnumeration.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>

#include <QLocale>
#include <QRect>
#include <QStringList>

namespace {

QString choiceText(const PEnumerationItem& item) {
    return item.title.isEmpty() ? item.name : item.title;
}

bool isTime(const PDeviceProperty& property) {
    return property.unit() == ValueUnits::Microsecond &&
           (property.type() == PCD::DevicePropertyType::Duration ||
            property.unitsType() == ValueUnitType::Time);
}

} // namespace

std::shared_ptr<const PNumberText> PPropertyDisplay::numberText(const PDeviceProperty& property) {
    if (isTime(property))
        return std::make_shared<PTimeText>();
    const bool inMicroseconds = property.unit() == ValueUnits::Microsecond;
    return std::make_shared<PNumberText>(inMicroseconds ? u' ' + tr("µs") : QString());
}

QString PPropertyDisplay::valueText(const PDeviceProperty& property, const QVariant& range,
                                    const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Int:
        return numberText(property)->toText(value.toInt(), 0, QLocale());
    case QMetaType::Bool:
        return value.toBool() ? tr("on") : tr("off");
    case QMetaType::QUuid:
        return choiceText(range.value<PEnumeration>().getItem(value.toUuid()));
    case QMetaType::QRect:
        return PPropertyText::ofRegion(value.toRect());
    default:
        return QString();
    }
}

QString PPropertyDisplay::rangeText(const PDeviceProperty& property, const QVariant& range) {
    if (range.metaType() != QMetaType::fromType<PMinMaxRange<int>>())
        return QString();
    const auto numbers = range.value<PMinMaxRange<int>>();
    const auto toText = [&](int number) { return valueText(property, range, number); };
    const QString ends =
        tr("Range: %1 to %2").arg(toText(numbers.minimum), toText(numbers.maximum));
    return numbers.step > 1 ? tr("%1, in steps of %2").arg(ends, toText(numbers.step)) : ends;
}

QString PPropertyDisplay::toolTip(const PDeviceProperty& property, const QVariant& range,
                                  const QString& description) {
    QStringList lines{description, rangeText(property, range)};
    if (property.type() != PCD::DevicePropertyType::Action && !property.valueInner().isValid())
        lines.prepend(tr("The camera did not report this setting."));
    const QString standard = valueText(property, range, property.defaultValue());
    if (!standard.isEmpty())
        lines.append(tr("Default: %1").arg(standard));
    lines.removeAll(QString());
    for (QString& line : lines)
        line = line.toHtmlEscaped();
    // Rich text wraps; plain text would make one long line of a long description.
    return lines.isEmpty() ? QString() : u"<p>%1</p>"_qs.arg(lines.join(u"<br>"_qs));
}

QString PPropertyDisplay::plainTitle(QString title) {
    return title.replace(u'&', u"&&"_qs);
}
