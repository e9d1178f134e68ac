// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/bench/PCheckValues.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Reading = PDeviceProperty::Reading;

constexpr int readings = 4;

PCheckResult examineStability(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    if (!property.isSerializable() || !PCheckValues::areComparable(property) ||
        bench.isDriven(property))
        return PCheckResult::skipped(u"changes by itself"_qs);
    const Reading first = property.readFromDevice();
    for (int i = 1; i < readings; ++i) {
        const Reading again = property.readFromDevice();
        if (!PCheckValues::isSame(first.value, again.value, first.range))
            return PCheckResult::failed(u"nothing was set, and it changed from %1 to %2"_qs.arg(
                PPropertyText::ofValue(first.value, first.range),
                PPropertyText::ofValue(again.value, again.range)));
    }
    return {};
}

PCheckResult examineInRange(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    const Reading reading = property.readFromDevice();
    if (PCheckValues::isAction(property) || !PCheckValues::isUsable(reading.range))
        return PCheckResult::skipped(u"has no range"_qs);
    if (bench.isInert(property))
        return PCheckResult::skipped(PCheckResult::inertText());
    return PCheckResult::unless(
        PPropertyCheck::check(property, reading.value, reading.range).reason());
}

PCheckResult examineSetting(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    property.updateValueFromDevice();
    if (!bench.maySet(property))
        return PCheckResult::skipped(bench.isInert(property) ? PCheckResult::inertText()
                                                             : u"is not set in a check"_qs);
    const QVariant before = property.valueInner();
    QString problem;
    for (const QVariant& value : PCheckValues::inside(property)) {
        const QVariant previous = property.valueInner();
        property.setValue(value);
        const Reading has = property.readFromDevice();
        // While it streams, a camera may refuse; but then it keeps what it had.
        const bool isRefused =
            bench.state().isStreaming && PCheckValues::isSame(previous, has.value, has.range);
        if (problem.isEmpty() && !isRefused && !PCheckValues::isTaken(value, has.value, has.range))
            problem = PCheckValues::describe(value, has);
    }
    property.setValue(before);
    return PCheckResult::unless(problem);
}

/// Sets the property to another value, reads all others, and looks whether it is still there.
PCheckResult examineReading(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    property.updateValueFromDevice();
    const QVariant other = PCheckValues::other(property);
    if (!bench.maySet(property) || !other.isValid())
        return PCheckResult::skipped(u"is not set in a check"_qs);
    const QVariant before = property.valueInner();
    property.setValue(other);
    const QVariant set = property.readFromDevice().value;
    QString problem;
    for (PDeviceProperty* const reader : bench.properties()) {
        if (reader == &property || PCheckValues::isAction(*reader))
            continue;
        reader->readFromDevice();
        const Reading has = property.readFromDevice();
        if (!PCheckValues::isSame(set, has.value, has.range)) {
            problem = u"reading \"%1\" changed it: %2"_qs.arg(QString::fromLatin1(reader->id()),
                                                              PCheckValues::describe(set, has));
            break;
        }
    }
    property.setValue(before);
    return PCheckResult::unless(problem);
}

/// The value with cooler or fan switched; invalid if there is none.
QVariant switchThermal(const PDeviceProperty& property) {
    QVariant value = property.valueInner();
    if (!PCompositeFields::isComposite(value))
        return PCheckValues::other(property);
    for (const PRoleBinding& binding : PPropertyRoles::of(property)) {
        const QString field = QString::fromLatin1(binding.field);
        const bool isOn = PCompositeFields::read(value, field).toInt() > 0;
        if (binding.role == PRole::CoolerOn || binding.role == PRole::FanOn)
            PCompositeFields::assign(value, field, isOn ? 0 : 1);
        else if (binding.role == PRole::FanLevel && !isOn)
            PCompositeFields::assign(value, field, 1); // at level 0 a fan is off
    }
    return value;
}

PCheckResult examineThermal(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    if (!PCheckValues::isThermal(property))
        return PCheckResult::skipped(u"neither warms nor cools"_qs);
    property.updateValueFromDevice();
    if (property.isUnread())
        return PCheckResult::skipped(u"the camera does not report it"_qs);
    const QVariant before = property.valueInner();
    const QVariant value = switchThermal(property);
    if (!value.isValid())
        return PCheckResult::skipped(u"has no other value"_qs);
    property.setValue(value);
    const Reading has = property.readFromDevice();
    property.setValue(before);
    return PCheckResult::unless(PCheckValues::isTaken(value, has.value, has.range)
                                    ? QString()
                                    : PCheckValues::describe(value, has));
}

} // namespace

QList<PCheckRule> PCheckRules::values() {
    const QString reader = u"See tryGetValueFromDevice(): one call to the camera, nothing kept."_qs;
    return {
        {u"properties.steady"_qs,
         u"A setting that nobody changes stays as it is; readings are not serialisable."_qs, reader,
         Where::States, For::EachProperty, &examineStability},
        {u"properties.in-range"_qs,
         u"What the camera has lies within the range that it offers."_qs,
         u"Compare the units of value and range."_qs,
         Where::States,
         For::EachProperty,
         &examineInRange,
         {u"properties.kind"_qs}},
        {u"properties.set-read-back"_qs,
         u"A value within the range that is set is then what the camera has, whatever the setter "
         "returns. Hardware may round it; while it streams, it may refuse."_qs,
         u"See trySetValueToDevice(), and whether the SDK needs another call before."_qs,
         Where::States,
         For::EachProperty,
         &examineSetting,
         {u"properties.kind"_qs, u"properties.steady"_qs}},
        {u"properties.untouched-by-reading"_qs,
         u"Reading a property changes no other: listing and saving write nothing."_qs,
         reader,
         Where::Modes,
         For::EachProperty,
         &examineReading,
         {u"properties.steady"_qs, u"properties.set-read-back"_qs}},
        {u"properties.thermal"_qs,
         u"Cooler and fan are then as they were set, like all other settings."_qs,
         u"See trySetValueToDevice() of the property."_qs,
         Where::Once,
         For::EachProperty,
         &examineThermal,
         {},
         u"heat"_qs},
    };
}
