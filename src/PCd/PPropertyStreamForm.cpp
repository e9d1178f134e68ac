// SPDX-License-Identifier: MIT
#include <PCd/PPropertyStreamForm.h>

#include <PCd/PEnumeration.h>

#include <QDataStream>
#include <QIODevice>
#include <QRect>

#include <algorithm>
#include <array>

namespace {

// Written down in files: it must not follow the Qt that happens to be there.
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

QVariant nameOfChoice(const QVariant& value, const PEnumeration& choices) {
    const PEnumerationItem item = choices.getItem(value.toUuid());
    return item.name.isEmpty() ? value : QVariant(item.name);
}

QVariant choiceOfName(const QVariant& form, const PEnumeration& choices) {
    const bool isId = form.typeId() == QMetaType::QUuid;
    if (!isId && form.typeId() != QMetaType::QString)
        return QVariant();
    for (const PEnumerationItem& item : choices.items()) {
        if (isId ? item.id == form.toUuid() : item.name == form.toString())
            return QVariant::fromValue(item.id);
    }
    return QVariant();
}

QVariant bytesOf(const QVariant& value) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    const bool saved = value.metaType().save(stream, value.constData());
    return saved && stream.status() == QDataStream::Ok ? QVariant(bytes) : QVariant();
}

QVariant valueOfBytes(const QByteArray& bytes, QVariant value) {
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    const bool loaded = value.metaType().load(stream, value.data());
    return loaded && stream.status() == QDataStream::Ok && stream.atEnd() ? value : QVariant();
}

} // namespace

bool PPropertyStreamForm::isComposite(const QVariant& value) {
    return value.isValid() && !isPlain(value.typeId());
}

QVariant PPropertyStreamForm::named(const QVariant& value, const QVariant& range) {
    return isChoice(range) ? nameOfChoice(value, range.value<PEnumeration>()) : value;
}

QVariant PPropertyStreamForm::toForm(const QVariant& value, const QVariant& range) {
    // As an id it would be null, which is the first choice's.
    if (!value.isValid())
        return QVariant();
    if (isChoice(range))
        return nameOfChoice(value, range.value<PEnumeration>());
    return isPlain(value.typeId()) ? value : bytesOf(value);
}

QVariant PPropertyStreamForm::fromForm(const QVariant& form, const QVariant& current,
                                       const QVariant& range) {
    if (isChoice(range))
        return choiceOfName(form, range.value<PEnumeration>());
    if (!current.isValid() || form.metaType() == current.metaType())
        return form;
    if (isComposite(current) && form.typeId() == QMetaType::QByteArray)
        return valueOfBytes(form.toByteArray(), current);
    return QVariant();
}

bool PPropertyStreamForm::areEqual(const QVariant& formA, const QVariant& formB) {
    return formA.metaType() == formB.metaType() && formA == formB;
}

bool PPropertyStreamForm::isSame(const QVariant& a, const QVariant& b, const QVariant& range) {
    const QVariant formOfA = toForm(a, range);
    return formOfA.isValid() && areEqual(formOfA, toForm(b, range));
}
