// SPDX-License-Identifier: MIT
#include <PCd/property/PQuietReading.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>

#include <support/QtPrinters.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

/// The exposure of a camera that does not hold it while it is triggered. The property below stores
/// what it reads, as those of plugins do.
struct CameraShot {
    Q_GADGET
    Q_PROPERTY(double exposure MEMBER exposure)
    Q_PROPERTY(int gain MEMBER gain)
    Q_PROPERTY(int mode MEMBER mode)
    Q_CLASSINFO("HostFields", "exposure")
    Q_CLASSINFO("HostFieldsWhile", "mode=1")

public:
    double exposure = 20;
    int gain = 100;
    int mode = 0;

    friend bool operator==(const CameraShot& a, const CameraShot& b) {
        return a.exposure == b.exposure && a.gain == b.gain && a.mode == b.mode;
    }
};

class KeepingProperty : public FakeProperty {
public:
    KeepingProperty()
        : FakeProperty("shot", QVariant::fromValue(CameraShot())) {}
    QVariant tryGetValue() override {
        setValueInner(FakeProperty::tryGetValue());
        return valueInner();
    }
    CameraShot known() const { return valueInner().value<CameraShot>(); }
};

class QuietReadingTest : public testing::Test {
protected:
    QuietReadingTest() {
        device.makeProperties = [this] { return QList<PDeviceProperty*>{gain, shot}; };
        gain->rangeInDevice = 10;
        device.supportProperties();
    }
    void changeAll() const {
        gain->inDevice = 7;
        gain->rangeInDevice = 20;
        shot->inDevice = QVariant::fromValue(CameraShot{5000, 120, 0});
    }

    FakeDevice device; // owns the properties
    FakeProperty* gain = new FakeProperty("gain", 5);
    KeepingProperty* shot = new KeepingProperty;
};

TEST_F(QuietReadingTest, shows_what_the_device_has_while_it_exists) {
    changeAll();
    const PQuietReading reading(device.supportProperties());
    EXPECT_EQ(gain->valueInner(), QVariant(7));
    EXPECT_EQ(gain->rangeInner(), QVariant(20));
    EXPECT_EQ(shot->known(), (CameraShot{5000, 120, 0}));
}

TEST_F(QuietReadingTest, emits_and_sends_nothing) {
    changeAll();
    QSignalSpy values(gain, &PDeviceProperty::valueChanged);
    QSignalSpy ranges(gain, &PDeviceProperty::rangeChanged);
    QSignalSpy shots(shot, &PDeviceProperty::valueChanged);
    { const PQuietReading reading(device.supportProperties()); }
    EXPECT_EQ(values.size() + ranges.size() + shots.size(), 0);
    EXPECT_FALSE(gain->calls.contains(u"set"_qs));
    EXPECT_FALSE(shot->calls.contains(u"set"_qs));
}

TEST_F(QuietReadingTest, leaves_each_property_with_the_cached_value_it_had) {
    changeAll();
    {
        const PQuietReading reading({gain, shot, gain}); // one of them named twice
    }
    EXPECT_EQ(gain->valueInner(), QVariant(5));
    EXPECT_EQ(gain->rangeInner(), QVariant(10));
    EXPECT_EQ(shot->known(), CameraShot());
}

TEST_F(QuietReadingTest, leaves_the_change_to_be_emitted_by_the_next_update) {
    changeAll();
    { const PQuietReading reading(device.supportProperties()); }
    QSignalSpy shots(shot, &PDeviceProperty::valueChanged);
    shot->updateValueFromDevice();
    EXPECT_EQ(shots.size(), 1);
    EXPECT_EQ(shot->known(), (CameraShot{5000, 120, 0}));
}

TEST_F(QuietReadingTest, keeps_the_fields_that_the_device_does_not_hold) {
    shot->setValue(QVariant::fromValue(CameraShot{20, 100, 1}));
    shot->inDevice = QVariant::fromValue(CameraShot{5000, 120, 1});
    const PQuietReading reading(device.supportProperties());
    EXPECT_EQ(shot->known(), (CameraShot{20, 120, 1}));
}

TEST_F(QuietReadingTest, has_no_value_for_what_the_device_does_not_report) {
    gain->failsToRead = true;
    {
        const PQuietReading reading(device.supportProperties());
        EXPECT_FALSE(gain->valueInner().isValid());
        EXPECT_EQ(reading.status().reason(), u"the camera did not report gain"_qs);
    }
    EXPECT_EQ(gain->valueInner(), QVariant(5));
}

TEST_F(QuietReadingTest, of_one_property_that_the_device_does_not_report_names_it_too) {
    gain->failsToRead = true;
    const PQuietReading reading({gain});
    EXPECT_EQ(reading.status().reason(), u"the camera did not report gain"_qs);
}

TEST_F(QuietReadingTest, has_no_composite_value_either_and_leaves_the_cached_one) {
    shot->setValue(QVariant::fromValue(CameraShot{20, 100, 0}));
    shot->failsToRead = true;
    {
        const PQuietReading reading(device.supportProperties());
        EXPECT_TRUE(shot->isUnread());
        EXPECT_FALSE(shot->valueInner().isValid());
    }
    EXPECT_FALSE(shot->isUnread());
    EXPECT_EQ(shot->known(), (CameraShot{20, 100, 0}));
}

TEST_F(QuietReadingTest, of_a_device_that_reports_everything_is_fine) {
    const PQuietReading reading(device.supportProperties());
    EXPECT_TRUE(reading.status().isOk());
}

TEST_F(QuietReadingTest, is_no_different_from_an_update_in_what_it_keeps) {
    shot->setValue(QVariant::fromValue(CameraShot{20, 100, 1}));
    shot->inDevice = QVariant::fromValue(CameraShot{5000, 120, 1});
    shot->updateValueFromDevice();
    EXPECT_EQ(shot->known(), (CameraShot{20, 120, 1}));
}

TEST_F(QuietReadingTest, a_value_that_was_stored_as_read_has_its_host_fields_restored_and_emitted) {
    shot->setValue(QVariant::fromValue(CameraShot{20, 100, 1}));
    shot->inDevice = QVariant::fromValue(CameraShot{5000, 120, 1});
    const QVariant before = shot->valueInner();
    shot->tryGetValue();
    shot->calls.clear();
    QSignalSpy shots(shot, &PDeviceProperty::valueChanged);
    shot->restoreHostFields(before);
    EXPECT_EQ(shot->known(), (CameraShot{20, 120, 1}));
    ASSERT_EQ(shots.size(), 1);
    EXPECT_EQ(shots[0].value(0).value<QVariant>().value<CameraShot>(), (CameraShot{20, 120, 1}));
    EXPECT_TRUE(shot->calls.isEmpty());
}

TEST_F(QuietReadingTest, a_value_that_the_device_holds_whole_is_not_restored) {
    const QVariant before = shot->valueInner();
    shot->inDevice = QVariant::fromValue(CameraShot{5000, 120, 0});
    shot->tryGetValue();
    QSignalSpy shots(shot, &PDeviceProperty::valueChanged);
    shot->restoreHostFields(before);
    EXPECT_EQ(shot->known(), (CameraShot{5000, 120, 0}));
    EXPECT_EQ(shots.size(), 0);
}

} // namespace

#include "PQuietReadingTest.moc"
