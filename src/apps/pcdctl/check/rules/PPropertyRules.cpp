// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PCompositeFields.h>

#include <PCore/PMinMaxRange.h>

#include <QMetaMethod>
#include <QRegularExpression>

#include <algorithm>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Kind = PCD::DevicePropertyType;
using Reading = PDeviceProperty::Reading;

PCheckResult examineIdForm(PCheckBench& bench) {
    static const QRegularExpression form(u"^[A-Za-z][A-Za-z0-9_-]*$"_qs);
    const QString id = QString::fromLatin1(bench.property().id());
    return PCheckResult::unless(form.match(id).hasMatch() ? QString()
                                                          : u"the id is \"%1\""_qs.arg(id));
}

PCheckResult examineUniqueId(PCheckBench& bench) {
    const auto& all = bench.properties();
    const auto count = std::count_if(all.begin(), all.end(), [&](const PDeviceProperty* other) {
        return other->id() == bench.property().id();
    });
    return PCheckResult::unless(count == 1 ? QString()
                                           : u"%1 properties have this id"_qs.arg(count));
}

PCheckResult examineTitle(PCheckBench& bench) {
    const bool hasPanel = bench.property().type() == Kind::Custom;
    return PCheckResult::unless(
        hasPanel || !bench.property().title().isEmpty() ? QString() : u"the title is empty"_qs);
}

PCheckResult examineNewObjects(PCheckBench& bench) {
    const QList<PDeviceProperty*> made = bench.device().getSupportProperties();
    bool isShared = false;
    for (PDeviceProperty* const property : made) {
        if (bench.properties().contains(property))
            isShared = true;
        else
            delete property;
    }
    return PCheckResult::unless(
        isShared ? u"a second call returns objects that belong to the device"_qs : QString());
}

template <typename Range>
bool hasRange(const Reading& reading) {
    return reading.range.metaType() == QMetaType::fromType<Range>();
}

bool isOfKind(Kind kind, const Reading& reading) {
    const int value = reading.value.typeId();
    switch (kind) {
    case Kind::Integer:
    case Kind::Duration:
        return value == QMetaType::Int && hasRange<PMinMaxRange<int>>(reading);
    case Kind::Switch:
        return value == QMetaType::Bool;
    case Kind::Choice:
        return value == QMetaType::QUuid && hasRange<PEnumeration>(reading);
    case Kind::ScanArea:
        return value == QMetaType::QRect && hasRange<PScanAreaRange>(reading);
    case Kind::Action:
        return !reading.value.isValid() && !reading.range.isValid();
    case Kind::Custom:
        return reading.value.isValid();
    }
    return false;
}

QString nameType(const QVariant& value) {
    return value.isValid() ? QString::fromLatin1(value.typeName()) : u"nothing"_qs;
}

PCheckResult examineKind(PCheckBench& bench) {
    const Reading reading = bench.property().readFromDevice();
    if (isOfKind(bench.property().type(), reading))
        return {};
    return PCheckResult::failed(u"the kind is %1, the value is of type %2, the range of %3"_qs.arg(
        QString::number(int(bench.property().type())), nameType(reading.value),
        nameType(reading.range)));
}

PCheckResult examineDefaultType(PCheckBench& bench) {
    const QVariant value = bench.property().defaultValue();
    const QVariant present = bench.property().readFromDevice().value;
    return PCheckResult::unless(!value.isValid() || value.metaType() == present.metaType()
                                    ? QString()
                                    : u"the default is of type %1, the value of %2"_qs.arg(
                                          nameType(value), nameType(present)));
}

PCheckResult examineRoles(PCheckBench& bench) {
    const PDeviceProperty& property = bench.property();
    const QMetaObject* const type = property.metaObject();
    for (const PRoleBinding& binding : PPropertyRoles::of(property)) {
        const QString field = QString::fromLatin1(binding.field);
        if (!field.isEmpty() && !PCompositeFields::names(property.valueInner()).contains(field))
            return PCheckResult::failed(
                u"a role names the field \"%1\", which the value lacks"_qs.arg(field));
        bool hasMethod = binding.method.isEmpty();
        for (int i = 0; i < type->methodCount() && !hasMethod; ++i)
            hasMethod = type->method(i).name() == binding.method;
        if (!hasMethod)
            return PCheckResult::failed(
                u"a role names the method \"%1\", which does not exist"_qs.arg(
                    QString::fromLatin1(binding.method)));
    }
    return {};
}

} // namespace

QList<PCheckRule> PCheckRules::properties() {
    return {
        {u"properties.id-form"_qs,
         u"The id of a property is one plain word: scripts and files have it."_qs,
         u"Use letters and digits; the title is for users."_qs, Where::Once, For::EachProperty,
         &examineIdForm},
        {u"properties.id-unique"_qs, u"No two properties have the same id."_qs,
         u"Look for a property that getSupportProperties() appends twice."_qs, Where::Once,
         For::EachProperty, &examineUniqueId},
        {u"properties.title"_qs,
         u"A property has a title for users, unless it has a panel of its own."_qs,
         u"Give a title in tr() to the constructor."_qs, Where::Once, For::EachProperty,
         &examineTitle},
        {u"properties.new-objects"_qs,
         u"getSupportProperties() makes new objects at each call: the caller owns them."_qs,
         u"Do not keep the list; the device does."_qs, Where::Once, For::Camera,
         &examineNewObjects},
        {u"properties.kind"_qs,
         u"The types of value and range are those of the property's kind: an editor is chosen by "
         "it."_qs,
         u"Derive from the typed base of that kind."_qs, Where::States, For::EachProperty,
         &examineKind},
        {u"properties.default-type"_qs,
         u"A default has the type of the value, as a reset sends it. It may lie outside the range."_qs,
         u"See the argument of setDefaultValue()."_qs,
         Where::Once,
         For::EachProperty,
         &examineDefaultType,
         {u"properties.kind"_qs}},
        {u"properties.roles"_qs,
         u"The fields and methods that roles name exist: programs find values by them."_qs,
         u"Compare PPropertyRoles::declare() with the value's Q_PROPERTY lines."_qs, Where::Once,
         For::EachProperty, &examineRoles},
    };
}
