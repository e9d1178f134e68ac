// SPDX-License-Identifier: MIT
#include <apps/pcdctl/completion/PPropertyCandidates.h>

#include <PCd/PEnumeration.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>

#include <algorithm>

namespace {

QString toId(const PDeviceProperty& property) {
    return QString::fromLatin1(property.id());
}

bool hasNoValue(const PDeviceProperty& property) {
    return property.type() == PCD::DevicePropertyType::Action;
}

/// "Contrast: a whole number from -100 to 100".
QString toDescription(const PDeviceProperty& property) {
    const QStringList fields = PCompositeFields::names(property.valueInner());
    const QString expected = !fields.isEmpty()      ? u"fields "_qs + fields.join(u", "_qs)
                             : hasNoValue(property) ? u"action"_qs
                                                    : PPropertyCheck::expectation(property);
    return property.title().isEmpty() ? expected : u"%1: %2"_qs.arg(property.title(), expected);
}

PCandidates toSwitch() {
    return {{u"on"_qs}, {u"off"_qs}};
}

PCandidates toChoices(const PEnumeration& choices) {
    PCandidates candidates;
    for (const PEnumerationItem& item : choices.items())
        candidates.append({item.name, item.title == item.name ? QString() : item.title});
    return candidates;
}

/// Adds a value, or another meaning to the value if it is already there.
void addValue(PCandidates& candidates, const QVariant& value, const QVariant& range,
              const QString& meaning) {
    const QString text = PPropertyText::ofValue(value, range);
    const auto same = std::find_if(candidates.begin(), candidates.end(),
                                   [&](const PCandidate& known) { return known.text == text; });
    if (same != candidates.end())
        same->description += u", "_qs + meaning;
    else if (value.isValid())
        candidates.append({text, meaning});
}

template <typename Number>
void addLimits(PCandidates& candidates, const QVariant& range) {
    if (!range.canConvert<PMinMaxRange<Number>>())
        return;
    const auto limits = range.value<PMinMaxRange<Number>>();
    addValue(candidates, limits.minimum, range, u"least"_qs);
    addValue(candidates, limits.maximum, range, u"most"_qs);
}

PCandidates toValues(const PDeviceProperty& property) {
    const QVariant range = property.rangeInner();
    if (range.metaType() == QMetaType::fromType<PEnumeration>())
        return toChoices(range.value<PEnumeration>());
    if (property.type() == PCD::DevicePropertyType::Switch)
        return toSwitch();
    PCandidates candidates;
    addValue(candidates, property.reportedValue(), range, u"now"_qs);
    addValue(candidates, property.defaultValue(), range, u"default"_qs);
    addLimits<int>(candidates, range);
    addLimits<double>(candidates, range);
    return candidates;
}

/// The field of a composite in a name "ID.FIELD"; invalid for any other name.
QVariant readField(const PDeviceProperty& property, const QString& name) {
    const QString beginning = toId(property) + u'.';
    return name.startsWith(beginning)
               ? PCompositeFields::read(property.reportedValue(), name.mid(beginning.size()))
               : QVariant();
}

} // namespace

PCandidates PPropertyCandidates::id(const PDeviceProperty& property) {
    if (hasNoValue(property))
        return {};
    return {{toId(property), toDescription(property)}};
}

PCandidates PPropertyCandidates::settings(const PDeviceProperty& property) {
    const QStringList fields = PCompositeFields::names(property.valueInner());
    if (fields.isEmpty())
        return {{hasNoValue(property) ? toId(property) : toId(property) + u'=',
                 toDescription(property)}};
    PCandidates candidates;
    for (const QString& field : fields) {
        candidates.append({u"%1.%2="_qs.arg(toId(property), field),
                           PCompositeFields::expectation(property.valueInner(), field)});
    }
    return candidates;
}

PCandidates PPropertyCandidates::values(const PDeviceProperty& property, const QString& name) {
    PCandidates candidates;
    const QVariant field = readField(property, name);
    if (field.typeId() == QMetaType::Bool)
        candidates = toSwitch();
    else if (field.isValid())
        addValue(candidates, field, QVariant(), u"now"_qs);
    else if (name == toId(property) && !hasNoValue(property))
        candidates = toValues(property);
    for (PCandidate& candidate : candidates)
        candidate.text.prepend(name + u'=');
    return candidates;
}
