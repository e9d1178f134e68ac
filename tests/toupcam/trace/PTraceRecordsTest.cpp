// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceRecords.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

ToupcamModelV2 makeModel() {
    ToupcamModelV2 model{};
    model.name = "Model";
    model.flag = TOUPCAM_FLAG_USB32_OVER_USB30 | TOUPCAM_FLAG_MONO;
    model.maxspeed = 3;
    model.preview = 2;
    model.still = 1;
    model.xpixsz = 2.4F;
    model.ypixsz = 2.4F;
    model.res[0] = {4000, 3000};
    model.res[1] = {2000, 1500};
    return model;
}

ToupcamDeviceV2 makeDevice(const ToupcamModelV2* model) {
    ToupcamDeviceV2 device{};
    std::strcpy(device.displayname, "Camera");
    std::memset(device.id, 'i', sizeof device.id); // without an end
    device.model = model;
    return device;
}

TEST(PTraceRecords, headers_come_back_as_they_were) {
    const BITMAPINFOHEADER header{40, -5, 7, 1, 24, 0, 4294967295U, 1, -1, 2, 3};
    BITMAPINFOHEADER read{};
    EXPECT_EQ(PTraceRecords::toHeader(PTraceRecords::fromHeader(header), read), QString());
    EXPECT_EQ(std::memcmp(&read, &header, sizeof header), 0);
}

TEST(PTraceRecords, information_about_frames_comes_back_as_it_was) {
    const ToupcamFrameInfoV2 info{640, 480, 3, 4294967295U, 18446744073709551615ULL};
    ToupcamFrameInfoV2 read{};
    EXPECT_EQ(PTraceRecords::toInfo(PTraceRecords::fromInfo(info), read), QString());
    EXPECT_EQ(read.seq, info.seq);
    EXPECT_EQ(read.timestamp, info.timestamp);
}

TEST(PTraceRecords, cameras_and_their_models_come_back_as_they_were) {
    const ToupcamModelV2 model = makeModel();
    const ToupcamDeviceV2 device = makeDevice(&model);
    PTraceRecords::Devices read;
    ASSERT_EQ(PTraceRecords::toDevices(PTraceRecords::fromDevices(&device, 1), read), QString());
    ASSERT_EQ(read.devices.size(), 1U);
    EXPECT_STREQ(read.devices[0].displayname, "Camera");
    EXPECT_EQ(std::memcmp(read.devices[0].id, device.id, sizeof device.id), 0);
    ASSERT_NE(read.devices[0].model, nullptr);
    EXPECT_STREQ(read.devices[0].model->name, "Model");
    EXPECT_EQ(read.devices[0].model->flag, model.flag);
    EXPECT_EQ(read.devices[0].model->maxspeed, 3U);
    EXPECT_EQ(read.devices[0].model->xpixsz, 2.4F);
    EXPECT_EQ(std::memcmp(read.devices[0].model->res, model.res, sizeof model.res), 0);
}

TEST(PTraceRecords, a_camera_without_a_model_comes_back_without_one) {
    const ToupcamDeviceV2 device = makeDevice(nullptr);
    PTraceRecords::Devices read;
    ASSERT_EQ(PTraceRecords::toDevices(PTraceRecords::fromDevices(&device, 1), read), QString());
    ASSERT_EQ(read.devices.size(), 1U);
    EXPECT_EQ(read.devices[0].model, nullptr);
}

TEST(PTraceRecords, a_model_with_more_resolutions_than_there_can_be_is_read_to_the_last_one) {
    ToupcamModelV2 model = makeModel();
    model.preview = 4000000000U;
    const ToupcamDeviceV2 device = makeDevice(&model);
    PTraceRecords::Devices read;
    EXPECT_EQ(PTraceRecords::toDevices(PTraceRecords::fromDevices(&device, 1), read), QString());
}

struct FieldRow {
    const char* name;
    const char* key;
    QJsonValue value;
};

const FieldRow wrongFields[] = {
    {"that_is_missing", "biWidth", QJsonValue::Undefined},
    {"that_is_a_text", "biWidth", u"3"_qs},
    {"with_a_fraction", "biHeight", 0.5},
    {"that_is_negative_and_cannot_be", "biSizeImage", -1},
    {"that_is_too_large", "biBitCount", 65536},
};

class WrongField : public RowTest<FieldRow> {};

ROW_TEST(WrongField, is_named) {
    QJsonObject object = PTraceRecords::fromHeader({});
    const QString key = QString::fromLatin1(GetParam().key);
    object.remove(key);
    if (!GetParam().value.isUndefined())
        object.insert(key, GetParam().value);
    BITMAPINFOHEADER read{};
    EXPECT_EQ(PTraceRecords::toHeader(object, read), key);
}

ROWS_IN(PTraceRecords, WrongField, wrongFields);

TEST(PTraceRecords, wrong_cameras_are_named_by_their_field) {
    const ToupcamModelV2 model = makeModel();
    const ToupcamDeviceV2 device = makeDevice(&model);
    const QJsonObject good = PTraceRecords::fromDevices(&device, 1).first().toObject();
    const auto read = [&](const QString& key, const QJsonValue& value) {
        QJsonObject object = good;
        object.insert(key, value);
        PTraceRecords::Devices devices;
        return PTraceRecords::toDevices({object}, devices);
    };
    EXPECT_EQ(read(u"id"_qs, QString(65, u'x')), u"id"_qs);
    EXPECT_EQ(read(u"displayname"_qs, 3), u"displayname"_qs);
    EXPECT_EQ(read(u"model"_qs, u"none"_qs), u"model"_qs);
    QJsonObject changed = good.value(u"model"_qs).toObject();
    changed.insert(u"flag"_qs, u"16"_qs);
    EXPECT_EQ(read(u"model"_qs, changed), u"model.flag"_qs);
    changed = good.value(u"model"_qs).toObject();
    changed.insert(u"res"_qs, QJsonArray());
    EXPECT_EQ(read(u"model"_qs, changed), u"model.res"_qs);
    changed.insert(u"xpixsz"_qs, 1e300);
    EXPECT_EQ(read(u"model"_qs, changed), u"model.xpixsz"_qs);
}

TEST(PTraceRecords, more_cameras_than_the_sdk_can_list_are_refused) {
    const ToupcamDeviceV2 device = makeDevice(nullptr);
    const QJsonObject one = PTraceRecords::fromDevices(&device, 1).first().toObject();
    QJsonArray array;
    for (int i = 0; i <= TOUPCAM_MAX; ++i)
        array.append(one);
    PTraceRecords::Devices devices;
    EXPECT_EQ(PTraceRecords::toDevices(array, devices), u"at most 128 cameras"_qs);
}

} // namespace
