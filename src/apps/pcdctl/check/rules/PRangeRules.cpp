// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/bench/PCheckValues.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyCheck.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PPropertyText.h>

#include <PCore/PMinMaxRange.h>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Reading = PDeviceProperty::Reading;

constexpr int rangeReadings = 4;

/// The range as it is now, if it is of this type.
template <typename Range>
std::optional<Range> readRange(PCheckBench& bench) {
    const QVariant range = bench.property().readFromDevice().range;
    if (range.metaType() != QMetaType::fromType<Range>())
        return std::nullopt;
    return range.value<Range>();
}

PCheckResult otherKind() {
    return PCheckResult::skipped(u"is of another kind"_qs);
}

template <typename Range>
PCheckResult judgeOrder(const Range& range) {
    if (range.minimum <= range.maximum && range.step >= 0)
        return {};
    return PCheckResult::failed(u"from %1 to %2 in steps of %3"_qs.arg(
        QString::number(range.minimum), QString::number(range.maximum),
        QString::number(range.step)));
}

PCheckResult examineOrder(PCheckBench& bench) {
    if (const auto whole = readRange<PMinMaxRange<int>>(bench))
        return judgeOrder(*whole);
    if (const auto real = readRange<PMinMaxRange<double>>(bench))
        return judgeOrder(*real);
    return otherKind();
}

PCheckResult examineSteadyRange(PCheckBench& bench) {
    const QVariant first = bench.property().readFromDevice().range;
    if (!first.isValid())
        return PCheckResult::skipped(u"has no range"_qs);
    for (int i = 1; i < rangeReadings; ++i) {
        if (bench.property().readFromDevice().range != first)
            return PCheckResult::failed(u"nothing was set, and the range changed"_qs);
    }
    return {};
}

PCheckResult examineChoices(PCheckBench& bench) {
    const auto choices = readRange<PEnumeration>(bench);
    if (!choices)
        return otherKind();
    return PCheckResult::unless(choices->items().isEmpty() ? u"there are no choices"_qs
                                                           : QString());
}

PCheckResult examineChoiceNames(PCheckBench& bench) {
    const auto choices = readRange<PEnumeration>(bench);
    if (!choices)
        return otherKind();
    QStringList names;
    for (const PEnumerationItem& item : choices->items()) {
        if (item.name.isEmpty() || names.contains(item.name))
            return PCheckResult::failed(
                item.name.isEmpty() ? u"a choice has no name"_qs
                                    : u"two choices have the name \"%1\""_qs.arg(item.name));
        names.append(item.name);
    }
    return {};
}

PCheckResult examineChoiceIds(PCheckBench& bench) {
    const auto choices = readRange<PEnumeration>(bench);
    if (!choices)
        return otherKind();
    QList<QUuid> ids;
    for (const PEnumerationItem& item : choices->items()) {
        if (ids.contains(item.id))
            return PCheckResult::failed(
                u"\"%1\" has the id of a choice before it"_qs.arg(item.name));
        ids.append(item.id);
    }
    return {};
}

PCheckResult examineRegion(PCheckBench& bench) {
    const auto range = readRange<PScanAreaRange>(bench);
    if (!range)
        return otherKind();
    const bool isValid = !range->bounds.isEmpty() && range->minimumWidth <= range->bounds.width() &&
                         range->minimumHeight <= range->bounds.height() && range->widthStep >= 0 &&
                         range->heightStep >= 0 && range->offsetStep >= 0;
    return PCheckResult::unless(isValid ? QString()
                                        : PPropertyCheck::expectation(bench.property()));
}

PCheckResult examineRegionInMode(PCheckBench& bench) {
    const auto range = readRange<PScanAreaRange>(bench);
    const PDeviceMode mode = bench.device().getCurrentMode();
    if (!range || mode.id.isEmpty() ||
        !PPropertyRoles::value(bench.property()).hasPlain(PRole::Region))
        return otherKind();
    const QRect all(0, 0, mode.width, mode.height);
    return PCheckResult::unless(all.contains(range->bounds)
                                    ? QString()
                                    : u"the area is %1, the mode has %2 x %3 pixels"_qs.arg(
                                          PPropertyText::ofRegion(range->bounds),
                                          QString::number(mode.width),
                                          QString::number(mode.height)));
}

PCheckResult examineEnds(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    property.updateValueFromDevice();
    const QList<QVariant> ends = PCheckValues::ends(property);
    if (!bench.maySet(property) || ends.isEmpty())
        return PCheckResult::skipped(u"has no ends, or is not set in a check"_qs);
    const QVariant before = property.valueInner();
    QString problem;
    for (const QVariant& end : ends) {
        property.setValue(end);
        const Reading has = property.readFromDevice();
        if (problem.isEmpty() && !PCheckValues::isTaken(end, has.value, has.range))
            problem = PCheckValues::describe(end, has);
    }
    property.setValue(before);
    return PCheckResult::unless(problem);
}

/// A driver need not refuse values outside the range, as hosts keep to it; but it must survive
/// them.
PCheckResult examineOutside(PCheckBench& bench) {
    PDeviceProperty& property = bench.property();
    property.updateValueFromDevice();
    const QVariant before = property.valueInner();
    const QList<QVariant> values = PCheckValues::outside(property);
    if (!bench.maySet(property) || values.isEmpty())
        return PCheckResult::skipped(u"has no range, or is not set in a check"_qs);
    QString problem;
    for (const QVariant& value : values) {
        property.setValue(value);
        property.setValue(before);
        const Reading has = property.readFromDevice();
        if (problem.isEmpty() && !PCheckValues::isTaken(before, has.value, has.range))
            problem = u"sent %1, then %2"_qs.arg(PPropertyText::ofValue(value, has.range),
                                                 PCheckValues::describe(before, has));
    }
    property.setValue(before);
    return PCheckResult::unless(problem);
}

} // namespace

QList<PCheckRule> PCheckRules::ranges() {
    const QString reader = u"See tryGetRangeFromDevice()."_qs;
    const QStringList setters{u"ranges.steady"_qs, u"properties.steady"_qs,
                              u"properties.set-read-back"_qs, u"properties.in-range"_qs};
    return {
        {u"ranges.ordered"_qs, u"A range runs from the smaller number to the larger."_qs, reader,
         Where::States, For::EachProperty, &examineOrder},
        {u"ranges.steady"_qs, u"A range stays as it is while nothing is set."_qs, reader,
         Where::States, For::EachProperty, &examineSteadyRange},
        {u"ranges.choices"_qs, u"A property that is a choice has choices."_qs, reader,
         Where::States, For::EachProperty, &examineChoices},
        {u"ranges.choice-names"_qs,
         u"Each choice has a name of its own: profiles and scripts have it."_qs,
         u"See the name in PEnumeration::addItem(); it is never translated."_qs, Where::States,
         For::EachProperty, &examineChoiceNames},
        {u"ranges.choice-ids"_qs, u"Each choice has an id of its own, else it cannot be chosen."_qs,
         u"See the id in PEnumeration::addItem()."_qs, Where::States, For::EachProperty,
         &examineChoiceIds},
        {u"ranges.region"_qs, u"A region has an area, and its smallest size fits into it."_qs,
         reader, Where::States, For::EachProperty, &examineRegion},
        {u"ranges.region-in-mode"_qs,
         u"The area of the region is in pixels of the present mode."_qs,
         u"Read the range from the camera, and again after a change of mode."_qs,
         Where::States,
         For::EachProperty,
         &examineRegionInMode,
         {u"ranges.region"_qs}},
        {u"ranges.ends"_qs,
         u"Both ends of a range can be set: an editor stops there, and not before."_qs, reader,
         Where::Modes, For::EachProperty, &examineEnds, setters},
        {u"ranges.outside"_qs,
         u"After a value outside the range, one within it can be set as before: hosts keep to the "
         "range, but scripts make mistakes."_qs,
         u"Let the SDK refuse it, or compare with the range in trySetValueToDevice()."_qs,
         Where::States, For::EachProperty, &examineOutside, setters},
    };
}
