// SPDX-License-Identifier: MIT
// The exposure of a frame as one value: what is sent, what is read, how it is serialised.
#include <PTDevice/ComparedFields.h>
#include <PTDevice/SimFixture.h>
#include <PTDevice/StreamBytes.h>

#include <PCdPlugins/PTDevice/PTExtendedExposure.h>

#include <support/QtPrinters.h>

#include <QMetaType>

#include <gmock/gmock.h>

#include <limits>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class PTExtendedExposureTest : public SimFixture {
protected:
    PTExtendedExposureTest() {
        loadScene({SimCameraText()
                       .withFlags(R"(["USB30", "TRIGGER_SOFTWARE", "TRIGGER_EXTERNAL"])")
                       .set("exposure", R"({"max": 100000000})")});
        device = open();
        device->supportProperties();
        SimJournal::clear();
        log.clear();
    }

    PTExtendedExposure* property() const {
        return findProperty<PTExtendedExposure>(*device, "extexposure");
    }

    std::unique_ptr<PTDevice> device;
};

ExtendedExposureData triggered(int minutes, int seconds, int milliseconds, int microseconds) {
    ExtendedExposureData d;
    d.capturemode = ExtendedExposureData::Trigger;
    d.minutes = minutes;
    d.seconds = seconds;
    d.milliseconds = milliseconds;
    d.microseconds = microseconds;
    return d;
}

} // namespace

// ---- Writing.

TEST_F(PTExtendedExposureTest, video_sends_all_five_settings_in_order) {
    ExtendedExposureData d;
    d.autoexpenabled = false;
    d.target = 90;
    d.exp = 12.5;
    d.gain = 150;
    EXPECT_TRUE(property()->trySetValueToDevice(d));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 11, 0) = 0",
                                                 "Toupcam_put_AutoExpoEnable(h1, 0) = 0",
                                                 "Toupcam_put_AutoExpoTarget(h1, 90) = 0",
                                                 "Toupcam_put_ExpoTime(h1, 12500) = 0",
                                                 "Toupcam_put_ExpoAGain(h1, 150) = 0"));
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

TEST_F(PTExtendedExposureTest, video_sends_time_and_gain_also_while_exposure_is_automatic) {
    property()->trySetValueToDevice(ExtendedExposureData());
    EXPECT_THAT(SimJournal::lines(), testing::SizeIs(5));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_ExpoTime"), testing::SizeIs(1));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_ExpoAGain"), testing::SizeIs(1));
}

TEST_F(PTExtendedExposureTest, video_cuts_the_time_to_whole_microseconds) {
    ExtendedExposureData d;
    d.exp = 0.0015;
    property()->trySetValueToDevice(d);
    EXPECT_THAT(SimJournal::calls("Toupcam_put_ExpoTime"),
                ElementsAre(HasSubstr("(h1, 1) = "))); // below the maximum of the camera, and sent
}

TEST_F(PTExtendedExposureTest, a_time_that_is_not_valid_is_sent_as_the_nearest_number) {
    ExtendedExposureData d;
    for (const double time : {-5.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
        d.exp = time;
        property()->trySetValueToDevice(d);
    }
    EXPECT_THAT(SimJournal::calls("Toupcam_put_ExpoTime"),
                ElementsAre(HasSubstr("(h1, 0) = "), HasSubstr("(h1, 4294967295) = "),
                            HasSubstr("(h1, 0) = ")));
}

TEST_F(PTExtendedExposureTest, a_software_trigger_sends_the_time_without_auto_exposure) {
    property()->trySetValueToDevice(triggered(1, 2, 3, 4));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_AutoExpoEnable(h1, 0) = 0",
                                                 "Toupcam_put_ExpoTime(h1, 62003004) = 0",
                                                 "Toupcam_put_Option(h1, 11, 1) = 0"));
    EXPECT_THAT(ptTexts(log), ElementsAre(u"[Toupcam] Activate software trigger mode"_qs));
}

TEST_F(PTExtendedExposureTest, an_external_trigger_is_the_other_option) {
    ExtendedExposureData d = triggered(0, 0, 20, 0);
    d.triggermode = ExtendedExposureData::ExternalTrigger;
    property()->trySetValueToDevice(d);
    EXPECT_THAT(SimJournal::calls("Toupcam_put_Option"),
                ElementsAre("Toupcam_put_Option(h1, 11, 2) = 0"));
    EXPECT_THAT(ptTexts(log), ElementsAre(u"[Toupcam] Activate hardware trigger mode"_qs));
}

TEST_F(PTExtendedExposureTest, an_unknown_trigger_is_logged_stored_and_changes_no_option) {
    ExtendedExposureData d = triggered(0, 1, 0, 0);
    d.triggermode = 7;
    EXPECT_TRUE(property()->trySetValueToDevice(d));
    EXPECT_THAT(SimJournal::calls("Toupcam_put_Option"), IsEmpty());
    EXPECT_THAT(ptTexts(log), ElementsAre(u"[Toupcam] Unknown trigger mode trigger mode"_qs));
    EXPECT_EQ(property()->value(), d);
}

TEST_F(PTExtendedExposureTest, an_unknown_capture_mode_sends_nothing_and_is_stored) {
    ExtendedExposureData d;
    d.capturemode = 2;
    EXPECT_TRUE(property()->trySetValueToDevice(d));
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
    EXPECT_EQ(property()->value(), d);
}

TEST_F(PTExtendedExposureTest, a_value_of_another_type_is_written_as_the_default_record) {
    ExtendedExposureData d;
    d.target = 55;
    property()->trySetValueToDevice(d);
    SimJournal::clear();
    EXPECT_TRUE(property()->trySetValue(u"bright"_qs));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Option(h1, 11, 0) = 0",
                                                 "Toupcam_put_AutoExpoEnable(h1, 1) = 0",
                                                 "Toupcam_put_AutoExpoTarget(h1, 100) = 0",
                                                 "Toupcam_put_ExpoTime(h1, 1000) = 0",
                                                 "Toupcam_put_ExpoAGain(h1, 120) = 0"));
    EXPECT_EQ(property()->value(), ExtendedExposureData());
}

namespace {

struct FailedCallRow {
    const char* name;
    const char* function;
    int capturemode;
    int triggermode;
    const char* text;
};

class PTExtendedExposureFailedCall : public PTExtendedExposureTest,
                                     public WithRow<FailedCallRow> {};

} // namespace

ROW_TEST(PTExtendedExposureFailedCall, is_logged_and_the_others_are_still_made) {
    ExtendedExposureData d;
    d.capturemode = GetParam().capturemode;
    d.triggermode = GetParam().triggermode;
    ToupcamSim_failCall(GetParam().function, 0, 0, E_FAIL);
    EXPECT_TRUE(property()->trySetValueToDevice(d));
    EXPECT_EQ(SimJournal::lines().size(), d.capturemode == 0 ? 5U : 3U);
    const QString text = u"Failed TOUPCAM_OP: "_qs + QLatin1String(GetParam().text);
    const QList<PLogRecord> records = ptRecords(log, text);
    ASSERT_EQ(records.size(), 1) << ptTexts(log).join(u'\n').toStdString();
    EXPECT_EQ(records.first().function,
              u"virtual bool PTExtendedExposure::trySetValueToDevice(ExtendedExposureData)"_qs);
    EXPECT_EQ(property()->value(), d);
}

ROWS(Rows, PTExtendedExposureFailedCall,
     FailedCallRow{"video_mode", "Toupcam_put_Option", 0, 0,
                   "Toupcam_put_Option(m_h, TOUPCAM_OPTION_TRIGGER, 0)"},
     FailedCallRow{"auto_exposure", "Toupcam_put_AutoExpoEnable", 0, 0,
                   "Toupcam_put_AutoExpoEnable(m_h, d.autoexpenabled)"},
     FailedCallRow{"target", "Toupcam_put_AutoExpoTarget", 0, 0,
                   "Toupcam_put_AutoExpoTarget(m_h, d.target)"},
     FailedCallRow{"time", "Toupcam_put_ExpoTime", 0, 0, "Toupcam_put_ExpoTime(m_h, d.exp * 1e+3)"},
     FailedCallRow{"gain", "Toupcam_put_ExpoAGain", 0, 0, "Toupcam_put_ExpoAGain(m_h, d.gain)"},
     FailedCallRow{"no_auto_exposure", "Toupcam_put_AutoExpoEnable", 1, 0,
                   "Toupcam_put_AutoExpoEnable(m_h, 0)"},
     FailedCallRow{"triggered_time", "Toupcam_put_ExpoTime", 1, 0,
                   "Toupcam_put_ExpoTime(m_h, expotime)"},
     FailedCallRow{"software_trigger", "Toupcam_put_Option", 1, 0,
                   "Toupcam_put_Option(m_h, TOUPCAM_OPTION_TRIGGER, 1)"},
     FailedCallRow{"external_trigger", "Toupcam_put_Option", 1, 1,
                   "Toupcam_put_Option(m_h, TOUPCAM_OPTION_TRIGGER, 2)"});

// ---- Reading.

TEST_F(PTExtendedExposureTest, four_settings_are_read_in_order) {
    property()->tryGetValueFromDevice();
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre(HasSubstr("Toupcam_get_ExpoTime("), HasSubstr("Toupcam_get_ExpoAGain("),
                            HasSubstr("Toupcam_get_AutoExpoEnable("),
                            HasSubstr("Toupcam_get_AutoExpoTarget(")));
}

TEST_F(PTExtendedExposureTest, what_was_read_is_stored_in_milliseconds) {
    Toupcam_put_ExpoTime(device->sdkHandle(), 12345);
    Toupcam_put_ExpoAGain(device->sdkHandle(), 222);
    Toupcam_put_AutoExpoEnable(device->sdkHandle(), 0);
    Toupcam_put_AutoExpoTarget(device->sdkHandle(), 77);
    const ExtendedExposureData d = property()->tryGetValueFromDevice();
    EXPECT_DOUBLE_EQ(d.exp, 12.345);
    EXPECT_EQ(d.gain, 222);
    EXPECT_FALSE(d.autoexpenabled);
    EXPECT_EQ(d.target, 77);
    EXPECT_EQ(property()->value(), d);
}

TEST_F(PTExtendedExposureTest, after_a_triggered_write_the_time_is_the_cameras_and_the_rest_kept) {
    ExtendedExposureData sent = triggered(1, 2, 3, 4);
    sent.spincount = 9;
    property()->trySetValueToDevice(sent);
    const ExtendedExposureData d = property()->tryGetValueFromDevice();
    EXPECT_DOUBLE_EQ(d.exp, 62003.004);
    EXPECT_FALSE(d.autoexpenabled);
    EXPECT_EQ(d.minutes, 1);
    EXPECT_EQ(d.seconds, 2);
    EXPECT_EQ(d.milliseconds, 3);
    EXPECT_EQ(d.microseconds, 4);
    EXPECT_EQ(d.spincount, 9);
    EXPECT_EQ(d.capturemode, ExtendedExposureData::Trigger);
}

TEST_F(PTExtendedExposureTest, what_cannot_be_read_is_logged_and_zero) {
    for (const char* function : {"Toupcam_get_ExpoTime", "Toupcam_get_ExpoAGain",
                                 "Toupcam_get_AutoExpoEnable", "Toupcam_get_AutoExpoTarget"})
        ToupcamSim_failCall(function, 0, 1, E_FAIL);
    const ExtendedExposureData d = property()->tryGetValueFromDevice();
    EXPECT_EQ(d.exp, 0);
    EXPECT_EQ(d.gain, 0);
    EXPECT_FALSE(d.autoexpenabled);
    EXPECT_EQ(d.target, 0);
    EXPECT_EQ(d.seconds, 5);
    EXPECT_THAT(ptTexts(log),
                ElementsAre(u"Failed TOUPCAM_OP: Toupcam_get_ExpoTime(m_h, &time)"_qs,
                            u"Failed TOUPCAM_OP: Toupcam_get_ExpoAGain(m_h, &gain)"_qs,
                            u"Failed TOUPCAM_OP: Toupcam_get_AutoExpoEnable(m_h, &autoexp)"_qs,
                            u"Failed TOUPCAM_OP: Toupcam_get_AutoExpoTarget(m_h, &target)"_qs));
}

TEST_F(PTExtendedExposureTest, there_is_no_range) {
    EXPECT_FALSE(property()->tryGetRange().isValid());
    property()->trySetRange(5);
    EXPECT_FALSE(property()->rangeInner().isValid());
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

// ---- Construction.

TEST_F(PTExtendedExposureTest, starts_with_the_defaults_and_reads_both_ranges) {
    const PTExtendedExposure fresh(device->sdkHandle(), "id", u"title"_qs);
    EXPECT_EQ(fresh.valueInner(), QVariant::fromValue(ExtendedExposureData()));
    EXPECT_EQ(fresh.title(), u"title"_qs);
    EXPECT_EQ(int(fresh.type()), 1);
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre(HasSubstr("Toupcam_get_ExpTimeRange(h1, 50, 100000000, 10000) = 0"),
                            HasSubstr("Toupcam_get_ExpoAGainRange(h1, 100, 500, 100) = 0")));
    EXPECT_TRUE(log.contains(u"Expotime 50 100000000"_qs, u"qt"_qs));
}

TEST_F(PTExtendedExposureTest, ranges_that_cannot_be_read_are_logged_and_ignored) {
    ToupcamSim_failCall("Toupcam_get_ExpTimeRange", 0, 1, E_FAIL);
    ToupcamSim_failCall("Toupcam_get_ExpoAGainRange", 0, 1, E_FAIL);
    const PTExtendedExposure fresh(device->sdkHandle(), "id", QString());
    EXPECT_THAT(ptTexts(log), ElementsAre(u"Failed TOUPCAM_OP: Toupcam_get_ExpTimeRange(m_h, "
                                          "&uMinTime, &uMaxTime, &ndef)"_qs,
                                          u"Failed TOUPCAM_OP: Toupcam_get_ExpoAGainRange(m_h, "
                                          "&uGainMin, &uGainMax, &uGainDef)"_qs));
}

// ---- The record.

TEST(ExtendedExposureDataTest, has_its_defaults) {
    const ExtendedExposureData d;
    EXPECT_EQ(d.target, 100);
    EXPECT_EQ(d.gain, 120);
    EXPECT_EQ(d.exp, 1.0);
    EXPECT_TRUE(d.autoexpenabled);
    EXPECT_EQ(d.minutes, 0);
    EXPECT_EQ(d.seconds, 5);
    EXPECT_EQ(d.milliseconds, 0);
    EXPECT_EQ(d.microseconds, 0);
    EXPECT_EQ(d.spincount, 1);
    EXPECT_EQ(d.triggermode, 0);
    EXPECT_EQ(d.capturemode, 0);
}

TEST(ExtendedExposureDataTest, is_another_one_if_any_of_its_11_fields_differs) {
    EXPECT_EQ(ExtendedExposureData::staticMetaObject.propertyCount(), 11);
    EXPECT_THAT(fieldsNotCompared<ExtendedExposureData>(), IsEmpty());
    EXPECT_TRUE(ExtendedExposureData() == ExtendedExposureData());
    EXPECT_FALSE(ExtendedExposureData() != ExtendedExposureData());
}

namespace {

ExtendedExposureData distinctRecord() {
    ExtendedExposureData d = triggered(1, 2, 3, 4);
    d.target = 0x0102;
    d.gain = 0xfffe; // above what a signed number of 16 bits holds
    d.exp = 1.5;
    d.autoexpenabled = true;
    d.spincount = 0x0a0b0c0d;
    d.triggermode = 1;
    return d;
}

const QByteArray distinctBytes = QByteArray::fromHex("0102 fffe 3ff8000000000000 01 00000001"
                                                     "00000002 00000003 00000004 0a0b0c0d");

} // namespace

TEST(ExtendedExposureDataTest, is_written_as_33_bytes_without_the_modes) {
    const QByteArray bytes = toBytes(distinctRecord());
    EXPECT_EQ(bytes.size(), 33);
    EXPECT_EQ(bytes.toHex(' '), distinctBytes.toHex(' '));
}

TEST(ExtendedExposureDataTest, is_read_back_and_the_readers_modes_stay) {
    ExtendedExposureData d;
    d.triggermode = 5;
    d.capturemode = 6;
    bool whole = false;
    d = valueOfBytes(distinctBytes, d, &whole);
    EXPECT_TRUE(whole);
    ExtendedExposureData expected = distinctRecord();
    expected.triggermode = 5;
    expected.capturemode = 6;
    EXPECT_EQ(d, expected);
}

TEST(ExtendedExposureDataTest, follows_the_byte_order_of_the_stream) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream << distinctRecord();
    EXPECT_TRUE(bytes.startsWith(QByteArray::fromHex("0201 feff 000000000000f83f 01 01000000")));
}

TEST(ExtendedExposureDataTest, switched_off_is_a_zero_byte_and_any_other_byte_means_on) {
    ExtendedExposureData d;
    d.autoexpenabled = false;
    QByteArray bytes = toBytes(d);
    ASSERT_GT(bytes.size(), 12);
    EXPECT_EQ(bytes.at(12), 0);
    bytes[12] = 7;
    bool whole = false;
    EXPECT_TRUE(valueOfBytes(bytes, d, &whole).autoexpenabled);
}

TEST(ExtendedExposureDataTest, a_stream_that_ends_early_says_so) {
    ExtendedExposureData d;
    QDataStream stream(distinctBytes.first(32));
    stream >> d;
    EXPECT_EQ(stream.status(), QDataStream::ReadPastEnd);
}

TEST_F(PTExtendedExposureTest, the_record_is_registered_by_name_and_streams_inside_a_variant) {
    const QMetaType type = QMetaType::fromName("ExtendedExposureData");
    ASSERT_EQ(type, QMetaType::fromType<ExtendedExposureData>());
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::ReadWrite);
    const ExtendedExposureData d = distinctRecord();
    ASSERT_TRUE(type.save(stream, &d));
    EXPECT_EQ(bytes, distinctBytes);
}
