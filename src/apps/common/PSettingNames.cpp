// SPDX-License-Identifier: MIT
#include <apps/common/PSettingNames.h>

#include <PCd/PDevice.h>
#include <PCd/PDeviceProperty.h>
#include <PCd/PPropertyText.h>

#include <QMetaProperty>

namespace {

/// The fields of a record with Qt's meta-object, which plugins' own types are.
QString recordText(const QVariant& value) {
    const QMetaObject* const fields = value.metaType().metaObject();
    QStringList texts;
    for (int i = 0; i < fields->propertyCount(); ++i) {
        const QMetaProperty field = fields->property(i);
        texts.append(QString::fromLatin1(field.name()) + u' ' +
                     PPropertyText::ofValue(field.readOnGadget(value.constData()), QVariant()));
    }
    return texts.join(u", "_qs);
}

} // namespace

PSettingNames PSettingNames::of(PDevice* device) {
    PSettingNames names;
    for (const PDeviceProperty* property : device->supportProperties()) {
        const QVariant range = property->rangeInner();
        if (range.metaType() == QMetaType::fromType<PEnumeration>())
            names.m_choices[property->id()] = range.value<PEnumeration>();
    }
    return names;
}

PEnumerationItem PSettingNames::item(const QByteArray& setting, const QVariant& value) const {
    const auto choices = m_choices.find(setting);
    const bool isChoice = choices != m_choices.end() && value.typeId() == QMetaType::QUuid;
    return isChoice ? choices->second.getItem(value.toUuid()) : PEnumerationItem();
}

QString PSettingNames::text(const QByteArray& setting, const QVariant& value) const {
    const PEnumerationItem choice = item(setting, value);
    if (!choice.title.isEmpty())
        return choice.title;
    const bool isRecord = (value.metaType().flags() & QMetaType::IsGadget) != 0;
    return isRecord ? recordText(value) : PPropertyText::ofValue(value, QVariant());
}
