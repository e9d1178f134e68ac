// SPDX-License-Identifier: MIT
#include <PCd/property/value/PCompositeFields.h>

#include <PCd/property/value/PPropertyText.h>
#include <PCd/property/value/PWholeNumber.h>

#include <QMetaProperty>

#include <cmath>

namespace {

const QMetaObject* gadgetFields(const QVariant& value) {
    const bool isGadget = value.metaType().flags().testFlag(QMetaType::IsGadget);
    return isGadget ? value.metaType().metaObject() : nullptr;
}

QMetaProperty findField(const QVariant& value, const QString& name) {
    const QMetaObject* const fields = gadgetFields(value);
    return fields == nullptr ? QMetaProperty()
                             : fields->property(fields->indexOfProperty(name.toLatin1()));
}

QVariant numberIn(const QString& text) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? QVariant(number) : QVariant();
}

/// The number in the field's type; invalid if it does not fit that type.
QVariant wholeNumber(qlonglong number, QMetaType type) {
    QVariant field(number);
    return field.convert(type) && field.toLongLong() == number ? field : QVariant();
}

QVariant wholeNumberIn(const QString& text, QMetaType type) {
    bool isNumber = false;
    const qlonglong number = text.toLongLong(&isNumber);
    return isNumber ? wholeNumber(number, type) : QVariant();
}

/// A value from a file, converted to the field's type: a field with decimals may have a whole
/// number there.
QVariant inFieldType(const QVariant& given, QMetaType type) {
    if (given.metaType() == type)
        return given;
    if (!isWholeNumber(given) || type.id() == QMetaType::Bool)
        return QVariant();
    return type.id() == QMetaType::Double ? QVariant(given.toDouble())
                                          : wholeNumber(given.toLongLong(), type);
}

QVariant parseField(const QString& text, QMetaType type) {
    if (type.id() == QMetaType::Bool)
        return PPropertyText::toSwitch(text);
    if (type.id() == QMetaType::Double)
        return numberIn(text);
    return wholeNumberIn(text, type);
}

QString classInfo(const QVariant& value, const char* name) {
    const QMetaObject* const fields = gadgetFields(value);
    const int index = fields == nullptr ? -1 : fields->indexOfClassInfo(name);
    return index < 0 ? QString() : QString::fromLatin1(fields->classInfo(index).value());
}

/// The ends of the range that the type declares for a field; empty if it declares none.
QStringList rangeEnds(const QVariant& value, const QString& name) {
    const QStringList ranges = classInfo(value, "Ranges").split(u' ', Qt::SkipEmptyParts);
    for (const QString& range : ranges) {
        if (range.section(u'=', 0, 0) == name)
            return range.section(u'=', 1).split(u".."_qs);
    }
    return {};
}

bool isInRange(const QVariant& value, const QString& name, const QVariant& meant) {
    const QStringList ends = rangeEnds(value, name);
    return ends.size() != 2 ||
           (meant.toDouble() >= ends[0].toDouble() && meant.toDouble() <= ends[1].toDouble());
}

QString expectationWithin(const QStringList& ends, QMetaType type) {
    return type.id() == QMetaType::Double
               ? PCompositeFields::tr("a number from %1 to %2").arg(ends[0], ends[1])
               : PCompositeFields::tr("a whole number from %1 to %2").arg(ends[0], ends[1]);
}

QString fieldExpectation(const QVariant& value, const QMetaProperty& field) {
    const QMetaType type = field.metaType();
    if (const QStringList ends = rangeEnds(value, QString::fromLatin1(field.name()));
        ends.size() == 2)
        return expectationWithin(ends, type);
    if (type.id() == QMetaType::Bool)
        return PCompositeFields::tr("on or off");
    if (type.id() == QMetaType::Double)
        return PCompositeFields::tr("a number");
    const bool isUnsigned = type.id() == QMetaType::UShort || type.id() == QMetaType::UInt;
    const int bits = int(type.sizeOf()) * 8;
    return isUnsigned ? PCompositeFields::tr("an unsigned whole number of %1 bits").arg(bits)
                      : PCompositeFields::tr("a whole number of %1 bits").arg(bits);
}

QString fieldText(const QVariant& field) {
    return PPropertyText::ofValue(field, QVariant());
}

/// The fields of this value that the device does not hold.
QStringList hostFields(const QVariant& value) {
    const QString condition = classInfo(value, "HostFieldsWhile");
    const QString field = condition.section(u'=', 0, 0);
    const QString wanted = condition.section(u'=', 1);
    if (condition.isEmpty() || fieldText(PCompositeFields::read(value, field)) != wanted)
        return {};
    return classInfo(value, "HostFields").split(u' ', Qt::SkipEmptyParts);
}

} // namespace

bool PCompositeFields::isComposite(const QVariant& value) {
    return gadgetFields(value) != nullptr;
}

QStringList PCompositeFields::names(const QVariant& value) {
    QStringList all;
    const QMetaObject* const fields = gadgetFields(value);
    for (int i = 0; fields != nullptr && i < fields->propertyCount(); ++i)
        all.append(QString::fromLatin1(fields->property(i).name()));
    return all;
}

QStringList PCompositeFields::storedNames(const QVariant& value) {
    QStringList stored = names(value);
    stored.removeIf([&](const QString& name) { return !findField(value, name).isStored(); });
    return stored;
}

QVariant PCompositeFields::read(const QVariant& value, const QString& name) {
    const QMetaProperty field = findField(value, name);
    return field.isValid() ? field.readOnGadget(value.constData()) : QVariant();
}

PStatus PCompositeFields::write(QVariant& value, const QString& name, const QString& text) {
    const QMetaProperty field = findField(value, name);
    if (!field.isValid())
        return PStatus::failure(u"there is no field \"%1\": expected one of %2"_qs.arg(
            name, names(value).join(u", "_qs)));
    const QVariant meant = parseField(text.trimmed(), field.metaType());
    if (!meant.isValid() || !isInRange(value, name, meant) ||
        !field.writeOnGadget(value.data(), meant))
        return PStatus::failure(u"\"%1\" cannot be \"%2\": expected %3"_qs.arg(
            name, text, fieldExpectation(value, field)));
    return PStatus::Ok;
}

bool PCompositeFields::assign(QVariant& value, const QString& name, const QVariant& given) {
    const QMetaProperty field = findField(value, name);
    const QVariant meant = field.isValid() ? inFieldType(given, field.metaType()) : QVariant();
    if (!meant.isValid())
        return false;
    if (isInRange(value, name, meant))
        return field.writeOnGadget(value.data(), meant);
    return read(value, name) == meant;
}

bool PCompositeFields::isOfType(const QVariant& value, const QString& name, const QVariant& given) {
    const QMetaProperty field = findField(value, name);
    return field.isValid() && inFieldType(given, field.metaType()).isValid();
}

QString PCompositeFields::expectation(const QVariant& value, const QString& name) {
    const QMetaProperty field = findField(value, name);
    return field.isValid() ? fieldExpectation(value, field) : QString();
}

QVariant PCompositeFields::withHostFields(QVariant read, const QVariant& known) {
    if (read.metaType() != known.metaType())
        return read;
    for (const QString& name : hostFields(read))
        findField(read, name).writeOnGadget(read.data(), PCompositeFields::read(known, name));
    return read;
}

QString PCompositeFields::toText(const QVariant& value) {
    QStringList parts;
    for (const QString& name : names(value))
        parts.append(name + u'=' + fieldText(read(value, name)));
    return parts.join(u' ');
}
