// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/bench/PCheckValues.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>
#include <PCd/property/value/PPropertyEncoding.h>

#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Reading = PDeviceProperty::Reading;

const QString savedName = u"saved"_qs;

PCheckResult examineMembers(PCheckBench& bench) {
    for (const PDevicePropertyGroup* group : bench.device().supportPropertyGroups()) {
        for (PDeviceProperty* const member : group->properties()) {
            if (!bench.properties().contains(member))
                return PCheckResult::failed(
                    u"\"%1\" in the group \"%2\" is not a property of the device"_qs.arg(
                        QString::fromLatin1(member->id()), group->id()));
        }
    }
    return {};
}

PCheckResult examineGroupIds(PCheckBench& bench) {
    QStringList ids;
    for (const PDevicePropertyGroup* group : bench.device().supportPropertyGroups()) {
        if (group->id().isEmpty() || ids.contains(group->id()))
            return PCheckResult::failed(
                u"two groups have the id \"%1\", or it is empty"_qs.arg(group->id()));
        ids.append(group->id());
    }
    return {};
}

PCheckResult examineGroupTitles(PCheckBench& bench) {
    for (const PDevicePropertyGroup* group : bench.device().supportPropertyGroups()) {
        if (group->title().isEmpty())
            return PCheckResult::failed(u"the group \"%1\" has no title"_qs.arg(group->id()));
    }
    return {};
}

PCheckResult examineRepeats(PCheckBench& bench) {
    QList<PDeviceProperty*> members;
    for (const PDevicePropertyGroup* group : bench.device().supportPropertyGroups()) {
        for (PDeviceProperty* const member : group->properties()) {
            if (members.contains(member))
                return PCheckResult::failed(
                    u"\"%1\" is a member twice"_qs.arg(QString::fromLatin1(member->id())));
            members.append(member);
        }
    }
    return {};
}

PCheckResult examineNewGroups(PCheckBench& bench) {
    const QList<PDevicePropertyGroup*> present = bench.device().supportPropertyGroups();
    const QList<PDevicePropertyGroup*> made = bench.device().getSupportPropertyGroups();
    bool isShared = false;
    for (PDevicePropertyGroup* const group : made) {
        if (present.contains(group))
            isShared = true;
        else
            delete group;
    }
    return PCheckResult::unless(
        isShared ? u"a second call returns objects that belong to the device"_qs : QString());
}

PCheckResult examineForm(PCheckBench& bench) {
    const PDeviceProperty& property = bench.property();
    if (PCheckValues::isAction(property) || !property.isSerializable())
        return PCheckResult::skipped(u"is not saved"_qs);
    const Reading reading = bench.property().readFromDevice();
    const QVariant form = PPropertyEncoding::toForm(reading.value, reading.range);
    if (!form.isValid())
        return PCheckResult::failed(u"a value of type %1 has no form for files"_qs.arg(
            QString::fromLatin1(reading.value.typeName())));
    const QVariant back = PPropertyEncoding::fromForm(form, reading.value, reading.range);
    return PCheckResult::unless(PCheckValues::isSame(reading.value, back, reading.range)
                                    ? QString()
                                    : u"what is read back from a file differs"_qs);
}

/// Writes the property, sets another value, reads the first one back.
PCheckResult examineSaving(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    property.updateValueFromDevice();
    const QVariant before = property.valueInner();
    const QVariant other = PCheckValues::other(property);
    if (!bench.maySet(property) || !property.isSerializable() || !other.isValid())
        return PCheckResult::skipped(u"is not saved, or is not set in a check"_qs);
    PJsonWriter writer;
    const bool isWritten = property.writeStreamThis(&writer, savedName);
    property.setValue(other);
    PJsonReader reader;
    const bool isRead = isWritten && reader.setDocument(writer.document()).isOk() &&
                        reader.beginObject(savedName) && property.readStreamThis(&reader);
    const Reading has = property.readFromDevice();
    property.setValue(before);
    if (isRead && PCheckValues::isTaken(before, has.value, has.range))
        return {};
    return PCheckResult::failed(isWritten ? PCheckValues::describe(before, has)
                                          : u"it cannot be written"_qs);
}

/// Writes the whole device, sets another value of one property and mode, reads all back.
PCheckResult examineDeviceSaving(PCheckBench& bench) {
    PDevice& device = bench.device();
    PCheckSettings before([&bench] { bench.touch(); });
    before.take(device);
    PJsonWriter writer;
    const bool isWritten = device.writeStreamThis(&writer, savedName);
    for (PDeviceProperty* const property : bench.properties()) {
        const QVariant other = PCheckValues::other(*property);
        if (bench.maySet(*property) && other.isValid())
            property->setValue(other);
    }
    PJsonReader reader;
    const bool isRead = isWritten && reader.setDocument(writer.document()).isOk() &&
                        reader.beginObject(savedName) && device.readStreamThis(&reader);
    const QStringList differences = before.differences(device, PCheckSettings::Saved);
    before.putBack(device);
    if (!isWritten)
        return PCheckResult::failed(u"the device cannot be written"_qs);
    if (!differences.isEmpty())
        return PCheckResult::failed(differences.join(u"; "_qs));
    return PCheckResult::unless(isRead ? QString() : u"reading it back is reported as failed"_qs);
}

} // namespace

QList<PCheckRule> PCheckRules::groups() {
    const QString maker = u"See getSupportPropertyGroups()."_qs;
    return {
        {u"groups.members"_qs, u"The members of groups are properties of the device."_qs,
         u"Find members with getProperty(); do not make new ones."_qs, Where::Once, For::Camera,
         &examineMembers},
        {u"groups.ids"_qs, u"Each group has an id of its own."_qs, maker, Where::Once, For::Camera,
         &examineGroupIds},
        {u"groups.titles"_qs, u"Each group has a title for users."_qs, maker, Where::Once,
         For::Camera, &examineGroupTitles},
        {u"groups.repeats"_qs, u"No property is a member twice: two editors would show it."_qs,
         maker, Where::Once, For::Camera, &examineRepeats},
        {u"groups.new-objects"_qs,
         u"getSupportPropertyGroups() makes new objects at each call: the caller owns them."_qs,
         u"Do not keep the list; the device does."_qs, Where::Once, For::Camera, &examineNewGroups},
    };
}

QList<PCheckRule> PCheckRules::serialisation() {
    const QStringList setters{u"properties.steady"_qs, u"properties.set-read-back"_qs,
                              u"properties.untouched-by-reading"_qs, u"ranges.choice-names"_qs};
    return {
        {u"serialisation.form"_qs,
         u"The value of a serialisable property can be written to a file and read back."_qs,
         u"Declare the fields of a composite type with Q_PROPERTY, or give it QDataStream "
         "operators; or call setSerializable(false)."_qs,
         Where::States,
         For::EachProperty,
         &examineForm,
         {u"ranges.choices"_qs, u"ranges.choice-names"_qs, u"ranges.choice-ids"_qs}},
        {u"serialisation.property"_qs,
         u"A property that was written and read again is as it was before."_qs,
         u"See writeValueToStream() and readValueFromStream(), if the driver overrides them."_qs,
         Where::Modes, For::EachProperty, &examineSaving,
         setters + QStringList{u"serialisation.form"_qs}},
        {u"serialisation.device"_qs,
         u"A device that was written and read again is as it was before."_qs,
         u"See writeStreamThis() and readStreamThis(), if the driver overrides them."_qs,
         Where::Modes, For::Camera, &examineDeviceSaving,
         setters + QStringList{u"serialisation.form"_qs, u"serialisation.property"_qs,
                               u"properties.id-unique"_qs}},
    };
}
