// SPDX-License-Identifier: MIT
// Properties that are bound to one getter and setter of the SDK, and the calls they make.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTProps.h>

#include <PCd/property/PDeviceProperty.h>

#include <support/QtPrinters.h>

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PTProps : public SimFixture {
protected:
    PTProps() {
        loadScene({SimCameraText()});
        device = open();
        device->supportProperties();
        SimJournal::clear();
    }

    Toupcam_t* handle() const { return device->sdkHandle(); }
    /// The device's address, as the journal writes it.
    QString contextText() const {
        return u"0x%1"_qs.arg(quintptr(static_cast<PDevice*>(device.get())), 0, 16);
    }
    PDeviceProperty* property(const char* id) const { return findProperty(*device, id); }

    std::unique_ptr<PTDevice> device;
};

} // namespace

// ---- Numbers.

TEST_F(PTProps, a_number_is_sent_and_read_by_its_own_calls) {
    EXPECT_TRUE(property("contrast")->trySetValue(-30));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Contrast(h1, -30) = 0"));
    EXPECT_EQ(property("contrast")->tryGetValue(), QVariant(-30));
    EXPECT_THAT(SimJournal::calls("Toupcam_get_Contrast"),
                ElementsAre("Toupcam_get_Contrast(h1, -30) = 0"));
}

TEST_F(PTProps, a_number_wider_than_the_sdks_is_cut_to_its_low_bits) {
    property("autoexpotarget")->trySetValue(70000);
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre(testing::StartsWith("Toupcam_put_AutoExpoTarget(h1, 4464) = ")));
}

TEST_F(PTProps, a_negative_time_is_sent_as_its_bit_pattern) {
    property("autoexpottime")->trySetValue(-1);
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre(testing::StartsWith("Toupcam_put_ExpoTime(h1, 4294967295) = ")));
}

TEST_F(PTProps, the_range_is_not_enforced_and_not_read_from_the_camera) {
    EXPECT_FALSE(property("hue")->trySetValue(181));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Hue(h1, 181) = -2147024809"));
    SimJournal::clear();
    EXPECT_EQ(property("hue")->tryGetRange(), QVariant::fromValue(PMinMaxRange<int>{-180, 180, 1}));
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTProps, a_number_is_taken_only_if_the_sdk_returns_exactly_zero) {
    EXPECT_TRUE(property("gamma")->trySetValue(90));
    ToupcamSim_failCall("Toupcam_put_Gamma", 0, 1, S_FALSE); // a success code, but not 0
    EXPECT_FALSE(property("gamma")->trySetValue(91));
    ToupcamSim_failCall("Toupcam_put_Gamma", 0, 1, E_FAIL);
    EXPECT_FALSE(property("gamma")->trySetValue(92));
    EXPECT_TRUE(ptTexts(log).isEmpty()) << "a refusal is not logged";
}

TEST_F(PTProps, a_number_that_cannot_be_read_is_zero) {
    ToupcamSim_failCall("Toupcam_get_Saturation", 0, 1, E_FAIL);
    EXPECT_EQ(property("saturation")->tryGetValue(), QVariant(0));
}

namespace {

/// A variable in place of a camera, with functions like the SDK's that read and write it.
template <typename T>
struct NumberInCamera {
    static inline T value = 0;
    static int get(Toupcam_t*, T* answer) {
        *answer = value;
        return 0;
    }
    static int put(Toupcam_t*, T sent) {
        value = sent;
        return 0;
    }
    static PTNumber<T> property(T minimum, T maximum) {
        return PTNumber<T>(nullptr, get, put, {minimum, maximum, 1}, "number", QString());
    }
};

using Short = NumberInCamera<unsigned short>;
using Unsigned = NumberInCamera<unsigned>;

} // namespace

TEST_F(PTProps, numbers_of_16_bits_have_no_sign) {
    Short::value = 40000;
    auto number = Short::property(0, 65535);
    EXPECT_EQ(number.tryGetValue(), QVariant(40000));
    EXPECT_EQ(number.tryGetRange(), QVariant::fromValue(PMinMaxRange<int>{0, 65535, 1}));
    EXPECT_TRUE(number.trySetValue(50000));
    EXPECT_EQ(Short::value, 50000);
}

TEST_F(PTProps, numbers_of_32_bits_are_taken_as_they_are) {
    Unsigned::value = 0xfffffff6;
    auto number = Unsigned::property(0, 50'000'000);
    EXPECT_EQ(number.tryGetValue(), QVariant(-10));
    EXPECT_EQ(number.tryGetRange(), QVariant::fromValue(PMinMaxRange<int>{0, 50'000'000, 1}));
}

// ---- Switches.

TEST_F(PTProps, a_switch_sends_one_and_zero) {
    property("negative")->trySetValue(true);
    property("negative")->trySetValue(false);
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre("Toupcam_put_Negative(h1, 1) = 0", "Toupcam_put_Negative(h1, 0) = 0"));
}

TEST_F(PTProps, a_switch_is_always_taken_whatever_the_sdk_returns) {
    ToupcamSim_failCall("Toupcam_put_VFlip", 0, 1, E_FAIL);
    EXPECT_TRUE(property("vflip")->trySetValue(true));
    EXPECT_EQ(property("vflip")->tryGetValue(), QVariant(false));
}

TEST_F(PTProps, a_switch_is_on_for_anything_but_zero) {
    static int held = 0;
    const auto get = [](Toupcam_t*, int* value) -> int {
        *value = held;
        return 0;
    };
    PTSwitch property(handle(), get, Toupcam_put_HFlip, "flip", QString());
    held = -7;
    EXPECT_EQ(property.tryGetValue(), QVariant(true));
    held = 0;
    EXPECT_EQ(property.tryGetValue(), QVariant(false));
}

// ---- Temperature and tint.

TEST_F(PTProps, the_temperature_is_sent_with_the_tint_that_the_camera_has) {
    ASSERT_EQ(Toupcam_put_TempTint(handle(), 5000, 1234), 0);
    SimJournal::clear();
    EXPECT_TRUE(property("temp")->trySetValue(4000));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_get_TempTint(h1, 5000, 1234) = 0",
                                                 "Toupcam_put_TempTint(h1, 4000, 1234) = 0"));
}

TEST_F(PTProps, the_tint_is_sent_with_the_temperature_that_the_camera_has) {
    ASSERT_EQ(Toupcam_put_TempTint(handle(), 5000, 1234), 0);
    SimJournal::clear();
    EXPECT_TRUE(property("tint")->trySetValue(900));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_get_TempTint(h1, 5000, 1234) = 0",
                                                 "Toupcam_put_TempTint(h1, 5000, 900) = 0"));
}

TEST_F(PTProps, each_half_is_read_out_of_one_reading_of_the_pair) {
    ASSERT_EQ(Toupcam_put_TempTint(handle(), 5000, 1234), 0);
    SimJournal::clear();
    EXPECT_EQ(property("temp")->tryGetValue(), QVariant(5000));
    EXPECT_EQ(property("tint")->tryGetValue(), QVariant(1234));
    EXPECT_EQ(SimJournal::lines().size(), 2U);
}

TEST_F(PTProps, a_half_that_is_neither_reads_zero_and_ignores_sets_with_success) {
    PTTempTint neither(handle(), 2, {1, 2, 1}, "neither", QString());
    EXPECT_TRUE(neither.trySetValue(4000));
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
    EXPECT_EQ(neither.tryGetValue(), QVariant(0));
}

TEST_F(PTProps, temperature_and_tint_are_always_taken_whatever_the_sdk_returns) {
    EXPECT_TRUE(property("temp")->trySetValue(1)); // refused by the camera
    ToupcamSim_failCall("Toupcam_put_TempTint", 0, 1, E_FAIL);
    EXPECT_TRUE(property("tint")->trySetValue(1000));
}

TEST_F(PTProps, what_cannot_be_read_reads_as_nothing) {
    ASSERT_EQ(Toupcam_put_HFlip(handle(), 1), 0);
    ToupcamSim_failCall("Toupcam_get_HFlip", 0, 1, E_FAIL);
    EXPECT_EQ(property("hflip")->tryGetValue(), QVariant(false));
    ToupcamSim_failCall("Toupcam_get_TempTint", 0, 1, E_FAIL);
    EXPECT_EQ(property("temp")->tryGetValue(), QVariant(0));
    ToupcamSim_failCall("Toupcam_get_Roi", 0, 1, E_FAIL);
    EXPECT_EQ(property("roi")->tryGetValue(), QVariant(QRect()));
}

// ---- One-push white balance.

TEST_F(PTProps, one_push_hands_the_device_to_the_sdk_and_always_succeeds) {
    std::size_t pushesBefore = 99;
    const AtRecord logged(u"Context:"_qs,
                          [&] { pushesBefore = SimJournal::calls("Toupcam_AwbOnePush").size(); });
    log.clear();
    EXPECT_TRUE(property("awbonce")->trySetValue(QVariant())); // no stream: the camera refuses
    EXPECT_EQ(SimJournal::calls("Toupcam_AwbOnePush").size(), 1U);
    EXPECT_EQ(pushesBefore, 0U) << "the line comes first";
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].items, (QStringList{u"Context:"_qs, contextText()}));
    EXPECT_EQ(records[0].function, u"virtual bool PTAWBOnce::trySetValueToDevice()"_qs);
}

TEST_F(PTProps, a_finished_one_push_has_tint_read_first_and_then_temp_each_later) {
    QStringList order;
    for (const char* id : {"tint", "temp"}) {
        QObject::connect(property(id), &PDeviceProperty::valueChanged,
                         [&order, id] { order.append(QString::fromLatin1(id)); });
    }
    ASSERT_EQ(Toupcam_put_TempTint(handle(), 5000, 1234), 0);
    cbWbOnce(1, 2, static_cast<PDevice*>(device.get()));
    EXPECT_TRUE(order.isEmpty()); // not from the SDK's thread
    QCoreApplication::processEvents();
    EXPECT_EQ(order, (QStringList{u"tint"_qs, u"temp"_qs}));
    EXPECT_EQ(property("temp")->valueInner(), QVariant(5000));
    EXPECT_EQ(property("tint")->valueInner(), QVariant(1234));
}

TEST_F(PTProps, a_finished_one_push_is_logged_with_its_context) {
    log.clear();
    cbWbOnce(1, 2, static_cast<PDevice*>(device.get()));
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].items, (QStringList{u"WB Once callback"_qs, contextText()}));
    EXPECT_EQ(records[0].function, u"void cbWbOnce(const int, const int, void *)"_qs);
}

TEST_F(PTProps, a_finished_one_push_without_the_properties_does_nothing) {
    device.reset();
    const auto bare = open(); // its list was never read
    cbWbOnce(1, 2, static_cast<PDevice*>(bare.get()));
    QCoreApplication::processEvents();
    EXPECT_THAT(SimJournal::calls("Toupcam_get_TempTint"), IsEmpty());
}

TEST_F(PTProps, a_one_push_that_finishes_after_its_device_is_gone_does_nothing) {
    void* const gone = static_cast<PDevice*>(device.get());
    device.reset();
    SimJournal::clear();
    cbWbOnce(1, 2, gone);
    QCoreApplication::processEvents();
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTProps, one_push_through_a_stream_ends_with_new_values_on_the_devices_thread) {
    loadScene(
        {SimCameraText().withSource(R"({"kind": "flat", "level": 0.5, "lightKelvin": 4000})")});
    device.reset();
    device = open();
    device->supportProperties();
    ASSERT_TRUE(device->link().isOk());
    ASSERT_TRUE(device->startStream().isOk());
    property("awbonce")->setValue(QVariant());
    EXPECT_TRUE(waitUntil([&] { return property("temp")->valueInner().toInt() < 5000; }));
    EXPECT_NEAR(property("temp")->valueInner().toInt(), 4000, 200);
    device->stopStream();
}
