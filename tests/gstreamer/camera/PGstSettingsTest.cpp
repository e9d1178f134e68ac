// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstSettings.h>

#include <gstreamer/GstFixture.h>
#include <gstreamer/camera/PGstHost.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

class PGstSettingsTest : public GstFixture {
protected:
    PDevice& open() {
        PGstHost& host = PGstHost::instance();
        EXPECT_TRUE(host.prepare(u"sim"_qs, scene()).isOk());
        PDevice& device = *host.manager().devices().first();
        EXPECT_TRUE(device.link().isOk());
        device.supportProperties();
        return device;
    }

    static std::string apply(PDevice& device, const QString& text) {
        PGstSettings settings;
        const PStatus read = settings.read(text);
        EXPECT_TRUE(read.isOk()) << read.reason().toStdString();
        return settings.apply(device).reason().toStdString();
    }

    /// Adds to those that are kept, and applies them all.
    std::string add(PDevice& device, const QString& text) {
        PGstSettings added;
        EXPECT_TRUE(added.read(text).isOk());
        kept.add(added);
        return kept.apply(device).reason().toStdString();
    }

    PGstSettings kept;
};

} // namespace

TEST_F(PGstSettingsTest, values_reach_the_camera) {
    PDevice& device = open();
    EXPECT_EQ(apply(device, u"negative=on, contrast=-20,roi=4,4,32,24"_qs), "");
    EXPECT_EQ(device.getProperty("negative")->valueInner(), QVariant(true));
    EXPECT_EQ(device.getProperty("contrast")->valueInner(), QVariant(-20));
    EXPECT_EQ(device.getProperty("roi")->valueInner(), QVariant(QRect(4, 4, 32, 24)));
}

TEST_F(PGstSettingsTest, nothing_is_sent_if_one_of_them_is_wrong) {
    PDevice& device = open();
    EXPECT_THAT(apply(device, u"negative=on,contrast=500"_qs), HasSubstr("500"));
    EXPECT_EQ(device.getProperty("negative")->valueInner(), QVariant(false));
}

TEST_F(PGstSettingsTest, fields_of_composite_values_are_set_by_their_names) {
    PDevice& device = open();
    EXPECT_EQ(apply(device, u"extexposure.capturemode=1"_qs), "");
    EXPECT_THAT(apply(device, u"extexposure.none=1"_qs), HasSubstr("none"));
    EXPECT_THAT(apply(device, u"negative.x=1"_qs), HasSubstr("has no fields"));
}

TEST_F(PGstSettingsTest, of_several_values_of_a_setting_the_last_one_is_kept) {
    PDevice& device = open();
    // Were it still there, the first value would be refused, and all others with it.
    EXPECT_THAT(add(device, u"contrast=500,negative=on"_qs), HasSubstr("500"));
    EXPECT_EQ(add(device, u"contrast=7"_qs), "");
    EXPECT_EQ(device.getProperty("contrast")->valueInner(), QVariant(7));
    EXPECT_EQ(device.getProperty("negative")->valueInner(), QVariant(true));
    kept.add(kept);
    EXPECT_EQ(kept.apply(device).reason().toStdString(), "");
}

TEST_F(PGstSettingsTest, a_field_is_kept_once_and_a_whole_value_replaces_all_fields) {
    PDevice& device = open();
    EXPECT_THAT(add(device, u"extexposure.capturemode=wrong"_qs), HasSubstr("wrong"));
    EXPECT_EQ(add(device, u"extexposure.capturemode=1"_qs), "");
    EXPECT_THAT(add(device, u"extexposure.none=1"_qs), HasSubstr("none"));
    EXPECT_THAT(add(device, u"extexposure.spincount=2"_qs), HasSubstr("none")); // another field
    const std::string whole = add(device, u"extexposure=0"_qs);
    EXPECT_THAT(whole, HasSubstr("one field at a time"));
    EXPECT_THAT(whole, Not(HasSubstr("none")));
    EXPECT_THAT(add(device, u"extexposure.capturemode=0"_qs), HasSubstr("one field at a time"));
}

TEST_F(PGstSettingsTest, a_part_without_a_value_is_named) {
    PGstSettings settings;
    EXPECT_THAT(settings.read(u"negative"_qs).reason().toStdString(),
                HasSubstr("\"negative\" is no setting"));
    EXPECT_TRUE(settings.isEmpty());
    EXPECT_TRUE(settings.read({}).isOk());
}
