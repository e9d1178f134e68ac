// SPDX-License-Identifier: MIT
#include <PCd/property/value/PPropertyText.h>

#include <PCd/PEnumeration.h>
#include <PCd/property/value/PCompositeFields.h>

#include <PCore/PPrintableText.h>

#include <cmath>
#include <limits>

namespace {

QVariant toNumber(const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? QVariant(number) : QVariant();
}

QVariant toRealNumber(const QString& text) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? QVariant(number) : QVariant();
}

/// Matches the title first, then the name, then the device's data: "0°", "0", "90".
QVariant toChoice(const QString& text, const PEnumeration& choices) {
    const auto find = [&](const auto& toText) -> QVariant {
        for (const PEnumerationItem& item : choices.items()) {
            if (toText(item).compare(text, Qt::CaseInsensitive) == 0)
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

bool isInt(qint64 number) {
    return number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
}

/// QRect stores corners, which are computed in 64 bits, as the user may type any numbers.
QVariant toRegion(int x, int y, int width, int height) {
    const qint64 right = qint64(x) + width - 1;
    const qint64 bottom = qint64(y) + height - 1;
    if (!isInt(right) || !isInt(bottom))
        return QVariant();
    return QRect(QPoint(x, y), QPoint(int(right), int(bottom)));
}

QVariant toRegion(const QString& text) {
    const QStringList parts = text.split(u',');
    QList<int> numbers;
    for (const QString& part : parts) {
        bool isNumber = false;
        numbers.append(part.trimmed().toInt(&isNumber));
        if (!isNumber)
            return QVariant();
    }
    return numbers.size() == 4 ? toRegion(numbers[0], numbers[1], numbers[2], numbers[3])
                               : QVariant();
}

} // namespace

QVariant PPropertyText::toSwitch(const QString& text) {
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

QString PPropertyText::ofRegion(const QRect& region) {
    // QRect::width() would overflow for corners that lie far apart.
    return u"%1,%2,%3,%4"_qs.arg(QString::number(region.left()), QString::number(region.top()),
                                 QString::number(qint64(region.right()) - region.left() + 1),
                                 QString::number(qint64(region.bottom()) - region.top() + 1));
}

QString PPropertyText::shortened(const QString& text) {
    constexpr int enough = 60;
    const QString result = PPrintableText::toLine(text.left(enough));
    return text.size() > enough ? result + u"…"_qs : result;
}

QString PPropertyText::ofValue(const QVariant& value, const QVariant& range) {
    if (!value.isValid())
        return QString();
    if (range.metaType() == QMetaType::fromType<PEnumeration>() &&
        value.typeId() == QMetaType::QUuid) {
        const PEnumerationItem item = range.value<PEnumeration>().getItem(value.toUuid());
        return item.title.isEmpty() ? value.toString() : item.title;
    }
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? u"on"_qs : u"off"_qs;
    if (value.typeId() == QMetaType::QRect)
        return ofRegion(value.toRect());
    if (value.typeId() == QMetaType::QByteArray) // from a file, perhaps unsafe for a terminal
        return QString::fromLatin1(value.toByteArray().toBase64());
    if (PCompositeFields::isComposite(value))
        return PCompositeFields::toText(value);
    if (value.canConvert<QString>())
        return value.toString();
    return u"<%1>"_qs.arg(QString::fromLatin1(value.metaType().name()));
}

QVariant PPropertyText::toValue(const QString& text, const QVariant& present,
                                const QVariant& range) {
    const QString trimmed = text.trimmed();
    if (range.metaType() == QMetaType::fromType<PEnumeration>())
        return toChoice(trimmed, range.value<PEnumeration>());
    switch (present.typeId()) {
    case QMetaType::Bool:
        return toSwitch(trimmed);
    case QMetaType::Int:
        return toNumber(trimmed);
    case QMetaType::Double:
        return toRealNumber(trimmed);
    case QMetaType::QRect:
        return toRegion(trimmed);
    default:
        return QVariant();
    }
}
