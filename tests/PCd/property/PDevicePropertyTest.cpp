// SPDX-License-Identifier: MIT
#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/RoleRecord.h>
#include <PCd/property/value/StreamedPair.h>

#include <PCd/PEnumeration.h>

#include <PCore/PMinMaxRange.h>
#include <PCore/state/PJsonReader.h>
#include <PCore/state/PJsonWriter.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>
#include <support/WaitUntil.h>

#include <QCoreApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <thread>

namespace {

/// A property owned by a device, and the signals that it emits after that.
class TakenProperty {
public:
    explicit TakenProperty(const QVariant& value = 5, const QVariant& range = {})
        : property(new FakeProperty("gain", value)) {
        property->rangeInDevice = range;
        device.makeProperties = [this] { return QList<PDeviceProperty*>{property}; };
        device.supportProperties();
        property->calls.clear();
        QObject::connect(property, &PDeviceProperty::valueChanged, [this](const QVariant& v) {
            emitted.append({"value", v});
        });
        QObject::connect(property, &PDeviceProperty::rangeChanged, [this](const QVariant& r) {
            emitted.append({"range", r});
        });
    }

    using Emitted = QList<std::pair<QByteArray, QVariant>>;

    FakeDevice device;
    FakeProperty* property; // owned by the device
    Emitted emitted;
};

using Emitted = TakenProperty::Emitted;

QVariant rangeTo(int maximum) {
    return QVariant::fromValue(PMinMaxRange<int>{0, maximum, 1});
}

} // namespace

TEST(PDeviceProperty, announces_a_value_before_it_is_sent) {
    TakenProperty taken;
    QStringList callsBefore;
    QVariant announced;
    QObject::connect(taken.property, &PDeviceProperty::valueAboutToBeSent,
                     [&](const QVariant& value) {
                         announced = value;
                         callsBefore = taken.property->calls;
                     });
    taken.property->setValue(7);
    EXPECT_EQ(announced, 7);
    EXPECT_EQ(callsBefore, QStringList());
    EXPECT_TRUE(taken.property->calls.contains(u"set"_qs));
}

TEST(PDeviceProperty, keeps_what_it_is_constructed_with) {
    const FakeProperty property("gain");
    EXPECT_EQ(property.id(), "gain");
    EXPECT_EQ(property.title(), u"Title of gain"_qs);
    EXPECT_EQ(property.type(), PCD::DevicePropertyType::Integer);
    EXPECT_TRUE(property.isSerializable());
    EXPECT_EQ(property.unit(), ValueUnits::None);
    EXPECT_EQ(property.unitsType(), ValueUnitType::None);
    EXPECT_FALSE(property.valueInner().isValid());
    EXPECT_FALSE(property.rangeInner().isValid());
    EXPECT_FALSE(property.defaultValue().isValid());
}

TEST(PDeviceProperty, keeps_what_is_set_later) {
    FakeProperty property("exposure");
    property.setType(PCD::DevicePropertyType::Duration);
    property.setUnit(ValueUnits::Microsecond);
    property.setUnitsType(ValueUnitType::Time);
    property.setDescription(u"how long"_qs);
    EXPECT_EQ(property.type(), PCD::DevicePropertyType::Duration);
    EXPECT_EQ(property.unit(), ValueUnits::Microsecond);
    EXPECT_EQ(property.unitsType(), ValueUnitType::Time);
    EXPECT_EQ(property.description(), u"how long"_qs);
}

TEST(PDeviceProperty, keeps_a_default_as_given_and_never_sends_it) {
    TakenProperty taken(5, rangeTo(10));
    taken.property->setDefaultValue(u"off the scale"_qs);
    EXPECT_EQ(taken.property->defaultValue(), QVariant(u"off the scale"_qs));
    EXPECT_EQ(taken.property->calls, QStringList());
    EXPECT_EQ(taken.property->valueInner(), QVariant(5));
    EXPECT_TRUE(taken.emitted.isEmpty());
}

// ---- Setting.

TEST(PDeviceProperty, has_what_the_device_made_of_a_value_that_it_took) {
    TakenProperty taken;
    taken.property->becomes = 8; // a time is rounded to what the sensor can do
    taken.property->setValue(9);
    EXPECT_EQ(taken.property->valueInner(), QVariant(8));
    EXPECT_EQ(taken.emitted, (Emitted{{"value", 8}}));
    EXPECT_EQ(taken.property->calls, (QStringList{u"set"_qs, u"get value"_qs}));
}

TEST(PDeviceProperty, has_the_type_that_the_device_gives_whatever_was_sent) {
    for (const QVariant& sent : {QVariant(u"9"_qs), QVariant(9u)}) {
        TakenProperty taken;
        taken.property->becomes = 9;
        taken.property->setValue(sent);
        EXPECT_EQ(taken.property->valueInner().typeId(), QMetaType::Int) << sent.typeName();
    }
}

TEST(PDeviceProperty, keeps_a_composite_value_that_was_taken_as_given) {
    // Devices do not hold every field of a composite value, and read zeros for the others.
    const auto pair = [](int a, int b) { return QVariant::fromValue(StreamedPair{a, b}); };
    TakenProperty taken(pair(1, 2));
    const auto leftOut = [&] { return taken.property->valueInner().value<StreamedPair>().leftOut; };
    taken.property->becomes = pair(3, 0);
    taken.property->setValue(pair(3, 4));
    EXPECT_EQ(leftOut(), 4);
    ASSERT_EQ(taken.emitted.size(), 1);
    EXPECT_EQ(taken.emitted.first().second.value<StreamedPair>().leftOut, 4);
    taken.property->refuses = true;
    taken.property->setValue(pair(5, 6));
    EXPECT_EQ(leftOut(), 0);
}

namespace {

struct RefusalRow {
    const char* name;
    bool answersTaken;
    bool answersOpposite;
};

class Refusal : public RowTest<RefusalRow> {};

} // namespace

ROW_TEST(Refusal, leaves_the_host_with_what_the_device_has) {
    TakenProperty taken;
    taken.property->refuses = true;
    taken.property->answersTaken = GetParam().answersTaken;
    taken.property->answersOpposite = GetParam().answersOpposite;
    taken.property->inDevice = 6;
    taken.property->setValue(9);
    EXPECT_EQ(taken.property->valueInner(), QVariant(6));
    EXPECT_EQ(taken.emitted, (Emitted{{"value", 6}}));
}

ROW_TEST(Refusal, is_seen_when_a_saved_value_is_restored) {
    PJsonReader reader;
    ASSERT_TRUE(reader.setDocument("{\"value\": 42}").isOk());
    TakenProperty taken;
    taken.property->refuses = true;
    taken.property->answersTaken = GetParam().answersTaken;
    taken.property->answersOpposite = GetParam().answersOpposite;
    EXPECT_FALSE(taken.property->readStreamThis(&reader));
    EXPECT_EQ(taken.property->valueInner(), QVariant(5));
}

ROWS(Rows, Refusal, RefusalRow{"that_the_device_admits", false, false},
     RefusalRow{"answered_as_taken", true, false},
     RefusalRow{"answered_in_the_opposite", false, true});

TEST(PDeviceProperty, emits_after_a_refusal_even_what_has_not_changed) {
    TakenProperty taken;
    taken.property->refuses = true;
    taken.property->setValue(9);
    EXPECT_EQ(taken.emitted, (Emitted{{"value", 5}})); // an editor that shows 9 must show 5 again
}

TEST(PDeviceProperty, changes_its_cached_value_without_a_signal_on_request) {
    TakenProperty taken;
    taken.property->setValueInner(7);
    EXPECT_EQ(taken.property->valueInner(), QVariant(7));
    EXPECT_TRUE(taken.emitted.isEmpty());
    EXPECT_EQ(taken.property->calls, QStringList());
}

// ---- Updating.

TEST(PDeviceProperty, emits_nothing_when_an_update_finds_nothing_new) {
    TakenProperty taken(5, rangeTo(10));
    taken.property->updateValueFromDevice();
    EXPECT_TRUE(taken.emitted.isEmpty());
}

TEST(PDeviceProperty, emits_nothing_for_an_equal_value_of_a_type_that_cannot_be_compared) {
    TakenProperty taken(RoleRecord::value());
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.emitted.size(), 0);
    RoleRecord record;
    record.whole = 7;
    taken.property->inDevice = QVariant::fromValue(record);
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.emitted.size(), 1);
}

TEST(PDeviceProperty, emits_a_new_value_alone) {
    TakenProperty taken(5, rangeTo(10));
    taken.property->inDevice = 6;
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.emitted, (Emitted{{"value", 6}}));
    EXPECT_EQ(taken.property->valueInner(), QVariant(6));
}

TEST(PDeviceProperty, emits_a_new_range_alone) {
    TakenProperty taken(5, rangeTo(10));
    taken.property->rangeInDevice = rangeTo(20);
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.emitted, (Emitted{{"range", rangeTo(20)}}));
    EXPECT_EQ(taken.property->rangeInner(), rangeTo(20));
}

TEST(PDeviceProperty, emits_the_range_before_the_value_that_lies_in_it) {
    TakenProperty taken(5, rangeTo(10));
    taken.property->rangeInDevice = rangeTo(20);
    taken.property->inDevice = 15;
    QVariant rangeSeenWithRange, valueSeenWithRange;
    QObject::connect(taken.property, &PDeviceProperty::rangeChanged, [&] {
        rangeSeenWithRange = taken.property->rangeInner();
        valueSeenWithRange = taken.property->valueInner();
    });
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.emitted, (Emitted{{"range", rangeTo(20)}, {"value", 15}}));
    EXPECT_EQ(taken.property->calls, (QStringList{u"get range"_qs, u"get value"_qs}));
    EXPECT_EQ(rangeSeenWithRange, rangeTo(20));
    EXPECT_EQ(valueSeenWithRange, QVariant(15));
}

TEST(PDeviceProperty, emits_range_and_value_in_any_case_when_forced) {
    TakenProperty taken(5, rangeTo(10));
    taken.property->updateValueFromDevice(true);
    EXPECT_EQ(taken.emitted, (Emitted{{"range", rangeTo(10)}, {"value", 5}}));
}

TEST(PDeviceProperty, does_not_take_an_equal_enumeration_for_a_change) {
    const auto choices = [](const QString& name) {
        PEnumeration enumeration;
        enumeration.addItem(QUuid(), name, name, {});
        return QVariant::fromValue(enumeration);
    };
    TakenProperty taken(QUuid(), choices(u"50 Hz"_qs));
    taken.property->rangeInDevice = choices(u"50 Hz"_qs); // another object
    taken.property->updateValueFromDevice();
    EXPECT_TRUE(taken.emitted.isEmpty());
    taken.property->rangeInDevice = choices(u"60 Hz"_qs);
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.emitted.size(), 1);
}

TEST(PDeviceProperty, is_updated_by_name_without_an_argument) {
    TakenProperty taken;
    taken.property->inDevice = 6;
    EXPECT_TRUE(
        QMetaObject::invokeMethod(taken.property, "updateValueFromDevice", Qt::QueuedConnection));
    EXPECT_TRUE(taken.emitted.isEmpty());
    ASSERT_TRUE(waitUntil([&] { return !taken.emitted.isEmpty(); }));
    EXPECT_EQ(taken.emitted, (Emitted{{"value", 6}}));
}

TEST(PDeviceProperty, is_updated_by_name_with_an_argument) {
    TakenProperty taken;
    EXPECT_TRUE(QMetaObject::invokeMethod(taken.property, "updateValueFromDevice",
                                          Qt::QueuedConnection, Q_ARG(bool, true)));
    EXPECT_TRUE(waitUntil([&] { return taken.emitted.size() == 2; }));
}

TEST(PDeviceProperty, is_updated_by_name_from_another_thread_on_its_own) {
    TakenProperty taken;
    taken.property->inDevice = 6;
    std::thread::id updatedOn;
    QObject::connect(taken.property, &PDeviceProperty::valueChanged,
                     [&] { updatedOn = std::this_thread::get_id(); });
    bool found = false;
    std::thread([&] {
        found = QMetaObject::invokeMethod(taken.property, "updateValueFromDevice",
                                          Qt::QueuedConnection);
    }).join();
    EXPECT_TRUE(found);
    ASSERT_TRUE(waitUntil([&] { return !taken.emitted.isEmpty(); }));
    EXPECT_EQ(updatedOn, std::this_thread::get_id());
    EXPECT_EQ(taken.property->valueInner(), QVariant(6));
}

TEST(PDeviceProperty, that_ends_with_an_update_posted_is_not_updated) {
    {
        TakenProperty taken;
        QMetaObject::invokeMethod(taken.property, "updateValueFromDevice", Qt::QueuedConnection);
        EXPECT_EQ(taken.property->calls, QStringList());
    }
    QCoreApplication::processEvents(); // a sanitizer would detect a call to a deleted object
}

// ---- Serialising.

namespace {

QByteArray saved(PDeviceProperty& property) {
    PJsonWriter writer;
    EXPECT_TRUE(property.writeStreamThis(&writer, QString::fromLatin1(property.id())));
    return writer.document();
}

/// Has the property read itself from the object with its id in the document.
bool restored(PDeviceProperty& property, const QByteArray& document) {
    PJsonReader reader;
    EXPECT_TRUE(reader.setDocument(document).isOk());
    EXPECT_TRUE(reader.beginObject(QString::fromLatin1(property.id())));
    return property.readStreamThis(&reader);
}

} // namespace

TEST(PDeviceProperty, comes_back_from_where_it_was_saved) {
    TakenProperty before(42);
    const QByteArray document = saved(*before.property);
    TakenProperty after(5);
    EXPECT_TRUE(restored(*after.property, document));
    EXPECT_EQ(after.property->inDevice, QVariant(42));
    EXPECT_EQ(after.property->valueInner(), QVariant(42));
    EXPECT_EQ(after.emitted, (Emitted{{"value", 42}}));
}

TEST(PDeviceProperty, comes_back_though_its_type_cannot_be_compared) {
    RoleRecord record;
    record.whole = 7;
    TakenProperty before(QVariant::fromValue(record));
    const QByteArray document = saved(*before.property);
    TakenProperty after(RoleRecord::value());
    EXPECT_TRUE(restored(*after.property, document));
    EXPECT_EQ(after.property->inDevice.value<RoleRecord>().whole, 7);
}

TEST(PDeviceProperty, saves_its_value_in_an_object_of_its_name) {
    TakenProperty taken(42);
    PJsonReader reader;
    ASSERT_TRUE(reader.setDocument(saved(*taken.property)).isOk());
    EXPECT_EQ(reader.objectNames(), QStringList{u"gain"_qs});
    ASSERT_TRUE(reader.beginObject(u"gain"_qs));
    EXPECT_EQ(reader.readValue(u"value"_qs), QVariant(42));
}

TEST(PDeviceProperty, that_is_not_serialisable_saves_nothing) {
    TakenProperty taken;
    taken.property->setSerializable(false);
    PJsonReader reader;
    ASSERT_TRUE(reader.setDocument(saved(*taken.property)).isOk());
    EXPECT_EQ(reader.objectNames(), QStringList());
}

TEST(PDeviceProperty, says_that_its_value_cannot_be_saved) {
    // This type cannot be written to a QDataStream.
    TakenProperty taken(QVariant::fromValue(PMinMaxRange<double>{0, 1, 1}));
    PJsonWriter writer;
    EXPECT_FALSE(taken.property->writeStreamThis(&writer, u"gain"_qs));
}

TEST(PDeviceProperty, sends_nothing_when_no_value_was_saved) {
    TakenProperty taken;
    EXPECT_FALSE(restored(*taken.property, "{\"gain\": {\"other\": 3}}"));
    EXPECT_EQ(taken.property->calls, QStringList());
}

TEST(PDeviceProperty, a_value_that_the_device_does_not_report_at_first_is_no_value) {
    FakeDevice device;
    auto* const gain = new FakeProperty("gain");
    gain->failsToRead = true;
    device.makeProperties = [gain] { return QList<PDeviceProperty*>{gain}; };
    device.supportProperties();
    EXPECT_FALSE(gain->valueInner().isValid());
    EXPECT_TRUE(gain->isUnread());
    gain->failsToRead = false;
    gain->updateValueFromDevice();
    EXPECT_EQ(gain->valueInner(), QVariant(5));
    EXPECT_FALSE(gain->isUnread());
}

TEST(PDeviceProperty, an_update_that_fails_leaves_no_value_and_announces_that_once) {
    TakenProperty taken;
    taken.property->failsToRead = true;
    taken.property->inDevice = 7;
    taken.property->updateValueFromDevice();
    EXPECT_FALSE(taken.property->valueInner().isValid()) << "the device may have another one now";
    EXPECT_TRUE(taken.property->isUnread());
    EXPECT_EQ(taken.property->reportedValue(), QVariant(5));
    EXPECT_EQ(taken.emitted, (Emitted{{"value", QVariant()}}));
    taken.property->updateValueFromDevice(); // again
    EXPECT_EQ(taken.property->reportedValue(), QVariant(5));
    EXPECT_EQ(taken.emitted.size(), 1);
}

TEST(PDeviceProperty, a_value_that_is_read_again_is_announced_even_if_it_is_the_last_one) {
    TakenProperty taken;
    taken.property->failsToRead = true;
    taken.property->updateValueFromDevice();
    taken.property->failsToRead = false;
    taken.property->updateValueFromDevice();
    EXPECT_FALSE(taken.property->isUnread());
    EXPECT_EQ(taken.emitted, (Emitted{{"value", QVariant()}, {"value", 5}}));
}

TEST(PDeviceProperty, a_forced_update_that_fails_emits_that_there_is_no_value) {
    TakenProperty taken;
    taken.property->failsToRead = true;
    taken.property->updateValueFromDevice(true);
    EXPECT_EQ(taken.emitted, (Emitted{{"range", QVariant()}, {"value", QVariant()}}));
}

TEST(PDeviceProperty, a_value_that_cannot_be_read_back_after_it_was_set_is_no_value) {
    TakenProperty taken;
    taken.property->failsToRead = true;
    taken.property->setValue(7);
    EXPECT_FALSE(taken.property->valueInner().isValid());
    EXPECT_EQ(taken.emitted, (Emitted{{"value", QVariant()}}));
}

TEST(PDeviceProperty, of_a_refused_composite_value_that_cannot_be_read_back_the_last_one_is_known) {
    TakenProperty taken(QVariant::fromValue(StreamedPair{1, 2}));
    taken.property->failsToRead = true;
    taken.property->refuses = true;
    taken.property->setValue(QVariant::fromValue(StreamedPair{3, 4}));
    EXPECT_TRUE(taken.property->isUnread());
    EXPECT_EQ(taken.property->reportedValue().value<StreamedPair>().saved, 1);
}

TEST(PDeviceProperty, caches_what_the_plugin_returned_for_a_composite_value_that_was_not_read) {
    TakenProperty taken(QVariant::fromValue(StreamedPair{1, 2}));
    taken.property->failsToRead = true;
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.property->valueInner().value<StreamedPair>().saved, StreamedPair().saved);
    EXPECT_TRUE(taken.property->isUnread());
    EXPECT_EQ(taken.property->reportedValue().value<StreamedPair>().saved, 1);
    EXPECT_EQ(taken.emitted, Emitted()) << "a panel would write it back";
    taken.property->updateValueFromDevice(); // again
    EXPECT_EQ(taken.property->reportedValue().value<StreamedPair>().saved, 1);
}

TEST(PDeviceProperty, keeps_a_composite_value_in_place_of_none_that_the_plugin_returned) {
    TakenProperty taken(QVariant::fromValue(StreamedPair{1, 2}));
    taken.property->failsToRead = taken.property->returnsNone = true;
    taken.property->updateValueFromDevice();
    EXPECT_EQ(taken.property->valueInner().value<StreamedPair>().saved, 1);
    EXPECT_TRUE(taken.property->isUnread());
    EXPECT_EQ(taken.emitted, Emitted());
}

TEST(PDeviceProperty, a_composite_value_that_is_read_again_is_announced_even_if_it_is_equal) {
    TakenProperty taken(QVariant::fromValue(StreamedPair()));
    taken.property->failsToRead = true;
    taken.property->updateValueFromDevice();
    taken.property->failsToRead = false;
    taken.property->updateValueFromDevice();
    EXPECT_FALSE(taken.property->isUnread());
    EXPECT_EQ(taken.emitted.size(), 1);
}

TEST(PDeviceProperty, of_a_composite_value_that_was_never_read_none_is_known) {
    FakeDevice device;
    auto* const pair = new FakeProperty("pair", QVariant::fromValue(StreamedPair{1, 2}));
    pair->setValueInner(QVariant::fromValue(StreamedPair{7, 7})); // as plugins do to begin with
    pair->failsToRead = true;
    device.makeProperties = [pair] { return QList<PDeviceProperty*>{pair}; };
    device.supportProperties();
    EXPECT_TRUE(pair->isUnread());
    EXPECT_EQ(pair->valueInner().value<StreamedPair>().saved, StreamedPair().saved);
    EXPECT_FALSE(pair->reportedValue().isValid());
}

TEST(PDeviceProperty, a_composite_value_that_was_not_read_is_not_saved) {
    TakenProperty taken(QVariant::fromValue(StreamedPair{1, 2}));
    taken.property->failsToRead = true;
    taken.property->updateValueFromDevice();
    PJsonWriter writer;
    EXPECT_FALSE(taken.property->writeStreamThis(&writer, u"gain"_qs));
}

TEST(PDeviceProperty, has_no_range_until_one_was_read) {
    FakeDevice device;
    device.makeProperties = [] {
        auto* const property = new FakeProperty("gain", 5);
        property->rangeInDevice = rangeTo(10);
        property->failsToReadRange = true;
        return QList<PDeviceProperty*>{property};
    };
    auto* const property = static_cast<FakeProperty*>(device.supportProperties().first());
    EXPECT_FALSE(property->rangeInner().isValid());
    EXPECT_FALSE(property->readFromDevice().range.isValid());
    property->updateValueFromDevice();
    EXPECT_FALSE(property->rangeInner().isValid());
    property->failsToReadRange = false;
    property->updateValueFromDevice();
    EXPECT_EQ(property->rangeInner(), rangeTo(10));
    property->failsToReadRange = true;
    property->updateValueFromDevice();
    EXPECT_EQ(property->rangeInner(), rangeTo(10));
}

TEST(PDeviceProperty, reading_what_the_device_does_not_report_gives_no_value_and_the_known_range) {
    TakenProperty taken(5, rangeTo(10));
    taken.property->failsToRead = true;
    taken.property->rangeInDevice = rangeTo(0);
    const PDeviceProperty::Reading reading = taken.property->readFromDevice();
    EXPECT_FALSE(reading.value.isValid());
    EXPECT_EQ(reading.range, rangeTo(10));
}
