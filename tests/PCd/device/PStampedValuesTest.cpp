// SPDX-License-Identifier: MIT
// The values in the stamps of a device's frames, and what changes them.
#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/frame/FrameHelpers.h>
#include <PCd/property/value/StreamedPair.h>

#include <PCd/PEnumeration.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

PEnumeration makeChoices(const QString& name) {
    PEnumeration choices;
    choices.addItem(QUuid(), name, name, "0");
    return choices;
}

class PStampedValuesTest : public testing::Test {
protected:
    PStampedValuesTest() {
        binning->rangeInDevice = QVariant::fromValue(makeChoices(u"none"_qs));
        device.makeProperties = [this] { return QList<PDeviceProperty*>{gain, pair, binning}; };
        device.supportProperties();
        device.link();
        device.startStream();
    }

    std::shared_ptr<const PDeviceSettings> stamp() {
        sendImages(device, 1);
        return stampIn(device.newestFrame()).settings;
    }
    static QVariant value(const PDeviceSettings& settings, qsizetype place) {
        return settings.values.value(place).second;
    }

    FakeDevice device; // owns the properties
    FakeProperty* gain = new FakeProperty("gain", 7);
    FakeProperty* pair = new FakeProperty("pair", QVariant::fromValue(StreamedPair{1, 5}));
    FakeProperty* binning = new FakeProperty("binning", QUuid());
};

} // namespace

TEST_F(PStampedValuesTest, are_shared_by_frames_between_which_nothing_changes) {
    EXPECT_EQ(stamp(), stamp());
}

TEST_F(PStampedValuesTest, of_a_frame_stay_as_they_were_when_it_was_taken) {
    const auto before = stamp();
    gain->setValue(9);
    gain->setValue(11);
    const auto after = stamp();
    EXPECT_EQ(value(*before, 0), 7);
    EXPECT_EQ(value(*after, 0), 11);
}

TEST_F(PStampedValuesTest, change_while_no_frame_has_them) {
    gain->setValue(9);
    EXPECT_EQ(value(*stamp(), 0), 9);
}

TEST_F(PStampedValuesTest, that_are_composite_are_taken_along_when_another_one_changes) {
    pair->setValueInner(QVariant::fromValue(StreamedPair{2, 6})); // without a signal
    gain->setValue(9);
    EXPECT_EQ(value(*stamp(), 1).value<StreamedPair>().leftOut, 6);
}

TEST_F(PStampedValuesTest, name_a_choice_as_its_new_range_does) {
    EXPECT_EQ(value(*stamp(), 2), u"none"_qs);
    binning->rangeInDevice = QVariant::fromValue(makeChoices(u"off"_qs));
    binning->updateValueFromDevice();
    EXPECT_EQ(value(*stamp(), 2), u"off"_qs);
}

TEST_F(PStampedValuesTest, are_complete_at_a_change_before_the_first_stream) {
    FakeDevice other;
    auto* const hue = new FakeProperty("hue", 1);
    auto* const tint = new FakeProperty("tint", 2);
    other.makeProperties = [=] { return QList<PDeviceProperty*>{hue, tint}; };
    other.supportProperties();
    tint->setValue(3);
    sendImages(other, 1);
    using Values = QList<std::pair<QByteArray, QVariant>>;
    EXPECT_EQ(settingsIn(other.newestFrame()).values, (Values{{"hue", 1}, {"tint", 3}}));
}

TEST_F(PStampedValuesTest, that_are_composite_and_were_not_read_at_first_are_taken_along_later) {
    FakeDevice other;
    auto* const hue = new FakeProperty("hue", 1);
    auto* const late = new FakeProperty("late", QVariant::fromValue(StreamedPair{1, 5}));
    late->failsToRead = true;
    other.makeProperties = [=] { return QList<PDeviceProperty*>{hue, late}; };
    other.supportProperties();
    hue->setValue(2);
    sendImages(other, 1);
    EXPECT_FALSE(settingsIn(other.newestFrame()).values.value(1).second.isValid());
    late->setValueInner(QVariant::fromValue(StreamedPair{2, 6})); // without a signal
    hue->setValue(3);
    sendImages(other, 1);
    const auto stamped = settingsIn(other.newestFrame()).values.value(1).second;
    EXPECT_EQ(stamped.value<StreamedPair>().leftOut, 6);
}

TEST_F(PStampedValuesTest, that_are_composite_stay_while_they_are_not_read) {
    pair->failsToRead = true;
    pair->updateValueFromDevice();
    gain->setValue(9);
    EXPECT_EQ(value(*stamp(), 1).value<StreamedPair>().leftOut, 5);
}
