// SPDX-License-Identifier: MIT
#include <PCd/property/value/PPropertyEncoding.h>

#include <PCd/PEnumeration.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PWholeNumber.h>

#include <PCore/state/PAbstractReader.h>
#include <PCore/state/PAbstractWriter.h>

#include <QDataStream>
#include <QIODevice>
#include <QRect>

#include <algorithm>
#include <array>

namespace {

// Fixed, because files contain it: it must not depend on the Qt version.
constexpr QDataStream::Version streamVersion = QDataStream::Qt_6_0;

bool isPlain(int type) {
    constexpr std::array plain{QMetaType::Bool,   QMetaType::Int,     QMetaType::LongLong,
                               QMetaType::Double, QMetaType::QString, QMetaType::QByteArray,
                               QMetaType::QRect,  QMetaType::QUuid};
    return std::find(plain.begin(), plain.end(), type) != plain.end();
}

bool isChoice(const QVariant& range) {
    return range.metaType() == QMetaType::fromType<PEnumeration>();
}

QVariant toChoiceName(const QVariant& value, const PEnumeration& choices) {
    if (!value.isValid()) // as an id it would be null, which is the first choice's
        return value;
    const PEnumerationItem item = choices.getItem(value.toUuid());
    return item.name.isEmpty() ? value : QVariant(item.name);
}

QVariant fromChoiceName(const QVariant& form, const PEnumeration& choices) {
    const bool isId = form.typeId() == QMetaType::QUuid;
    if (!isId && form.typeId() != QMetaType::QString)
        return QVariant();
    for (const PEnumerationItem& item : choices.items()) {
        if (isId ? item.id == form.toUuid() : item.name == form.toString())
            return QVariant::fromValue(item.id);
    }
    return QVariant();
}

/// A field in a type that files support; invalid if there is none for it.
QVariant plainField(const QVariant& field) {
    switch (field.typeId()) {
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
        return field.toInt();
    case QMetaType::UInt:
        return field.toLongLong();
    default:
        return isPlain(field.typeId()) ? field : QVariant();
    }
}

/// The stored fields; empty if there are none, or if files have no type for one of them.
QVariantMap toFields(const QVariant& value) {
    QVariantMap fields;
    for (const QString& name : PCompositeFields::storedNames(value)) {
        const QVariant field = plainField(PCompositeFields::read(value, name));
        if (!field.isValid())
            return {};
        fields.insert(name, field);
    }
    return fields;
}

QVariant fromFields(const QVariantMap& fields, QVariant value) {
    const QStringList stored = PCompositeFields::storedNames(value);
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        if (!stored.contains(field.key()) ||
            !PCompositeFields::assign(value, field.key(), field.value()))
            return QVariant();
    }
    return value;
}

QVariant toBytes(const QVariant& value) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    const bool saved = value.metaType().save(stream, value.constData());
    return saved && stream.status() == QDataStream::Ok ? QVariant(bytes) : QVariant();
}

/// Bytes hold any number, also one beyond the range that its type declares and that the current
/// value does not have.
bool isPossible(const QVariant& value, QVariant current) {
    const QStringList fields = PCompositeFields::storedNames(value);
    return std::all_of(fields.begin(), fields.end(), [&](const QString& name) {
        return PCompositeFields::assign(current, name, PCompositeFields::read(value, name));
    });
}

QVariant fromBytes(const QByteArray& bytes, const QVariant& current) {
    QVariant value = current;
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    const bool loaded = value.metaType().load(stream, value.data());
    const bool isWhole = loaded && stream.status() == QDataStream::Ok && stream.atEnd();
    return isWhole && isPossible(value, current) ? value : QVariant();
}

} // namespace

bool PPropertyEncoding::isComposite(const QVariant& value) {
    return value.typeId() >= QMetaType::User;
}

QVariant PPropertyEncoding::named(const QVariant& value, const QVariant& range) {
    return isChoice(range) ? toChoiceName(value, range.value<PEnumeration>()) : value;
}

QVariant PPropertyEncoding::toForm(const QVariant& value, const QVariant& range) {
    if (!value.isValid())
        return QVariant();
    if (isChoice(range))
        return toChoiceName(value, range.value<PEnumeration>());
    if (isPlain(value.typeId()))
        return value;
    const QVariantMap fields = toFields(value);
    return fields.isEmpty() ? toBytes(value) : fields;
}

QVariant PPropertyEncoding::fromForm(const QVariant& form, const QVariant& current,
                                     const QVariant& range) {
    if (isChoice(range))
        return fromChoiceName(form, range.value<PEnumeration>());
    if (!current.isValid() || form.metaType() == current.metaType())
        return form;
    if (current.typeId() == QMetaType::Double && isWholeNumber(form))
        return form.toDouble(); // files have no other form for 20.0
    if (!isPlain(current.typeId()) && form.typeId() == QMetaType::QByteArray)
        return fromBytes(form.toByteArray(), current);
    if (form.typeId() == QMetaType::QVariantMap && PCompositeFields::isComposite(current))
        return fromFields(form.toMap(), current);
    return QVariant();
}

bool PPropertyEncoding::write(PAbstractWriter& writer, const QString& name, const QVariant& value,
                              const QVariant& range) {
    const QVariant form = toForm(value, range);
    if (form.typeId() != QMetaType::QVariantMap)
        return writer.writeValue(name, form);
    const QVariantMap fields = form.toMap();
    bool done = true;
    writer.beginObject(name);
    for (const QString& field : PCompositeFields::storedNames(value)) // in the order of the type
        done = writer.writeValue(field, fields.value(field)) && done;
    writer.endObject();
    return done;
}

QVariant PPropertyEncoding::read(PAbstractReader& reader, const QString& name) {
    if (!reader.beginObject(name))
        return reader.readValue(name);
    QVariantMap fields;
    for (const QString& field : reader.valueNames())
        fields.insert(field, reader.readValue(field));
    reader.endObject();
    return fields;
}

bool PPropertyEncoding::areEqual(const QVariant& formA, const QVariant& formB) {
    return formA.metaType() == formB.metaType() && formA == formB;
}

bool PPropertyEncoding::isSame(const QVariant& a, const QVariant& b, const QVariant& range) {
    const QVariant formOfA = toForm(a, range);
    return formOfA.isValid() && areEqual(formOfA, toForm(b, range));
}
