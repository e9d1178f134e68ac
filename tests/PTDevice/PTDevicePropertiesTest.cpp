// SPDX-License-Identifier: MIT
// The catalogue: which properties and groups a camera offers, in which order.
#include <PTDevice/SimFixture.h>

#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>

#include <PCore/PMinMaxRange.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using Type = PCD::DevicePropertyType;

namespace {

struct CatalogueRow {
    const char* id;
    const char* title;
    Type type;
    QVariant range;        ///< of a number; others are not checked here
    QVariant defaultValue; ///< invalid: none
    bool serializable = true;
};

QVariant numbers(int minimum, int maximum) {
    return QVariant::fromValue(PMinMaxRange<int>{minimum, maximum, 1});
}

QVariant numbersWithoutAny() {
    return QVariant::fromValue(PMinMaxRange<int>{0, 0, 0});
}

/// The properties of the camera below, which has no cooler and no fan.
const std::vector<CatalogueRow>& catalogue() {
    static const std::vector<CatalogueRow> rows{
        {"extexposure", "", Type::Custom, {}, {}},
        {"autoexponeable", "Autoexposure", Type::Switch, {}, true, false},
        {"autoexpotarget", "Autotarget", Type::Integer, numbers(10, 230), {}, false},
        {"autoexpottime", "Time", Type::Duration, numbers(50, 1'000'000), 120, false},
        {"autoexpogain", "Gain", Type::Integer, numbers(100, 300), 100, false},
        {"tint", "Tint", Type::Integer, numbers(200, 2500), 6503},
        {"temp", "Temp", Type::Integer, numbers(2000, 15000), 1000},
        {"awbonce", "Auto whitebalance", Type::Action, {}, {}},
        {"contrast", "Contrast", Type::Integer, numbers(-100, 100), 0},
        {"hue", "Hue", Type::Integer, numbers(-180, 180), 0},
        {"saturation", "Saturation", Type::Integer, numbers(0, 255), 128},
        {"brightness", "Brightness", Type::Integer, numbers(-64, 64), 0},
        {"gamma", "Gamma", Type::Integer, numbers(20, 180), 100},
        {"negative", "Negative", Type::Switch, {}, {}},
        {"chrome", "Chrome", Type::Switch, {}, {}},
        {"vflip", "Vertical flip", Type::Switch, {}, {}},
        {"hflip", "Horizontal flip", Type::Switch, {}, {}},
        {"speed", "Speed", Type::Integer, numbers(0, 3), 3},
        {"roi", "ROI", Type::ScanArea, {}, {}},
        {"backlight", "", Type::Custom, numbersWithoutAny(), {}},
        {"colormatrix", "Color matrix", Type::Choice, {}, {}},
        {"wbgain", "WB Gain", Type::Choice, {}, {}},
        {"binning", "Binning", Type::Choice, {}, {}},
        {"rotate", "Rotate", Type::Choice, {}, {}},
    };
    return rows;
}

SimCameraText plainCamera() {
    return SimCameraText()
        .set("exposure", R"({"max": 1000000})")
        .set("gain", R"({"max": 300})")
        .set("speedLevels", "4");
}

class PTDeviceProperties : public SimFixture {
protected:
    void load(const SimCameraText& camera) {
        device.reset();
        loadScene({camera});
        device = open();
        device->supportProperties();
    }
    QStringList ids() const {
        QStringList all;
        for (const PDeviceProperty* property : device->supportProperties())
            all.append(QString::fromLatin1(property->id()));
        return all;
    }
    PDeviceProperty* property(const char* id) const { return findProperty(*device, id); }

    std::unique_ptr<PTDevice> device;
};

QStringList propertyIds(const PDevicePropertyGroup* group) {
    QStringList ids;
    for (const PDeviceProperty* property : group->properties())
        ids.append(QString::fromLatin1(property->id()));
    return ids;
}

} // namespace

TEST_F(PTDeviceProperties, a_camera_without_cooler_and_fan_has_the_plain_catalogue_in_order) {
    load(plainCamera());
    QStringList expected;
    for (const CatalogueRow& row : catalogue())
        expected.append(QString::fromLatin1(row.id));
    EXPECT_EQ(ids(), expected);
}

namespace {

struct AccessoryRow {
    const char* name;
    const char* flags;
    QStringList accessories; ///< between "roi" and "backlight"
};

class PTDeviceAccessories : public PTDeviceProperties, public WithRow<AccessoryRow> {};

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

ROW_TEST(PTDeviceAccessories, are_offered_by_the_model_flags_after_the_region) {
    load(plainCamera().withFlags(GetParam().flags));
    QStringList expected;
    for (const CatalogueRow& row : catalogue()) {
        expected.append(QString::fromLatin1(row.id));
        if (expected.last() == u"roi"_qs)
            expected += GetParam().accessories;
    }
    EXPECT_EQ(ids(), expected);
    ASSERT_EQ(device->supportPropertyGroups().size(), 8);
    EXPECT_EQ(propertyIds(device->supportPropertyGroups().last()), GetParam().accessories);
    for (const QString& id : GetParam().accessories) {
        EXPECT_EQ(property(id.toLatin1())->type(), Type::Custom);
        EXPECT_TRUE(property(id.toLatin1())->title().isEmpty());
        EXPECT_TRUE(property(id.toLatin1())->isSerializable());
    }
}

ROWS(Rows, PTDeviceAccessories, AccessoryRow{"neither", R"(["USB30"])", {}},
     AccessoryRow{"cooler", R"(["TEC_ONOFF"])", words("teccontrol")},
     AccessoryRow{"fan", R"(["FAN"])", words("fan")},
     AccessoryRow{"both", R"(["TEC_ONOFF", "FAN"])", words("teccontrol fan")},
     AccessoryRow{"cooler_by_bit_7", R"("0x80")", words("teccontrol")},
     AccessoryRow{"fan_by_bit_16", R"("0x10000")", words("fan")});

TEST_F(PTDeviceProperties, each_has_its_title_type_range_default_and_flag) {
    load(plainCamera());
    for (const CatalogueRow& row : catalogue()) {
        const PDeviceProperty* const offered = property(row.id);
        EXPECT_EQ(offered->title(), QString::fromLatin1(row.title)) << row.id;
        EXPECT_EQ(offered->type(), row.type) << row.id;
        EXPECT_EQ(offered->defaultValue(), row.defaultValue) << row.id;
        EXPECT_EQ(offered->isSerializable(), row.serializable) << row.id;
        if (row.range.isValid()) {
            EXPECT_EQ(offered->rangeInner(), row.range) << row.id;
        }
    }
}

TEST_F(PTDeviceProperties, the_types_have_the_numbers_that_files_and_hosts_know) {
    EXPECT_EQ(int(Type::Custom), 1);
    EXPECT_EQ(int(Type::Switch), 9);
    EXPECT_EQ(int(Type::Integer), 5);
    EXPECT_EQ(int(Type::Duration), 6);
    EXPECT_EQ(int(Type::Action), 11);
    EXPECT_EQ(int(Type::ScanArea), 19);
    EXPECT_EQ(int(Type::Choice), 10);
}

TEST_F(PTDeviceProperties, the_exposure_time_alone_has_a_unit_and_it_is_the_microsecond) {
    load(plainCamera());
    for (const PDeviceProperty* offered : device->supportProperties()) {
        const bool isTime = offered->id() == "autoexpottime";
        EXPECT_EQ(int(offered->unit()), isTime ? 8 : 0) << offered->id().toStdString();
        EXPECT_EQ(int(offered->unitsType()), isTime ? 3 : 0) << offered->id().toStdString();
    }
}

TEST_F(PTDeviceProperties, the_speed_alone_has_a_description_of_what_to_do_without_a_picture) {
    load(plainCamera());
    for (const PDeviceProperty* offered : device->supportProperties()) {
        const QString expected = offered->id() == "speed"
                                     ? u"If the live video is not displayed, reduce the speed."_qs
                                     : QString();
        EXPECT_EQ(offered->description(), expected) << offered->id().toStdString();
    }
}

TEST_F(PTDeviceProperties, an_exposure_maximum_of_60_s_is_cut_to_50_s) {
    load(plainCamera().set("exposure", R"({"max": 60000000})"));
    EXPECT_EQ(property("autoexpottime")->rangeInner(), numbers(50, 50'000'000));
}

TEST_F(PTDeviceProperties, an_exposure_maximum_of_1_s_is_kept) {
    load(plainCamera());
    EXPECT_EQ(property("autoexpottime")->rangeInner(), numbers(50, 1'000'000));
}

TEST_F(PTDeviceProperties, a_highest_speed_of_3_gives_a_range_to_3_and_the_default_3) {
    load(plainCamera().set("speedLevels", "4"));
    EXPECT_EQ(property("speed")->rangeInner(), numbers(0, 3));
    EXPECT_EQ(property("speed")->defaultValue(), QVariant(3));
}

TEST_F(PTDeviceProperties, the_highest_speed_is_the_end_of_its_range_and_its_default) {
    load(plainCamera().set("speedLevels", "2"));
    EXPECT_EQ(property("speed")->rangeInner(), numbers(0, 1));
    EXPECT_EQ(property("speed")->defaultValue(), QVariant(1));
}

TEST_F(PTDeviceProperties, a_highest_speed_may_need_16_bits) {
    load(plainCamera().set("speedLevels", "301"));
    EXPECT_EQ(property("speed")->rangeInner(), numbers(0, 300));
    EXPECT_EQ(property("speed")->defaultValue(), QVariant(300));
}

struct NoSpeedRow {
    const char* name;
    HRESULT result;
};

class PTDeviceNoSpeed : public PTDeviceProperties, public WithRow<NoSpeedRow> {};

ROW_TEST(PTDeviceNoSpeed, offers_no_levels) {
    loadScene({plainCamera()});
    device = open();
    ToupcamSim_failCall("Toupcam_get_MaxSpeed", 0, 0, GetParam().result);
    device->supportProperties();
    EXPECT_EQ(property("speed")->rangeInner(), numbers(0, 0));
    EXPECT_EQ(property("speed")->defaultValue(), QVariant(0));
}

ROWS(Rows, PTDeviceNoSpeed, NoSpeedRow{"a_highest_speed_that_cannot_be_read", E_FAIL},
     NoSpeedRow{"a_camera_that_is_gone", E_GEN_FAILURE}, NoSpeedRow{"a_highest_speed_of_0", 0});

TEST_F(PTDeviceProperties, ranges_that_cannot_be_read_do_not_stop_the_catalogue) {
    loadScene({plainCamera()});
    device = open();
    ToupcamSim_failCall("Toupcam_get_ExpTimeRange", 0, 0, E_FAIL);
    ToupcamSim_failCall("Toupcam_get_ExpoAGainRange", 0, 0, E_FAIL);
    EXPECT_EQ(device->supportProperties().size(), qsizetype(catalogue().size()));
    EXPECT_EQ(property("autoexpottime")->rangeInner(), numbers(0, 0));
}

TEST_F(PTDeviceProperties, building_the_list_reads_the_camera_and_writes_nothing) {
    loadScene({plainCamera()});
    device = open();
    SimJournal::clear();
    device->supportProperties();
    EXPECT_FALSE(SimJournal::lines().empty());
    for (const std::string& line : SimJournal::lines())
        EXPECT_EQ(line.find("_put_"), std::string::npos) << line;
}

TEST_F(PTDeviceProperties, ranges_are_read_in_the_order_of_the_catalogue) {
    loadScene({plainCamera()});
    device = open();
    SimJournal::clear();
    qDeleteAll(device->getSupportProperties());
    EXPECT_THAT(SimJournal::lines(),
                testing::ElementsAre("Toupcam_get_ExpTimeRange(h1, 50, 1000000, 10000) = 0",
                                     "Toupcam_get_ExpoAGainRange(h1, 100, 300, 100) = 0",
                                     "Toupcam_get_ExpTimeRange(h1, 50, 1000000, 10000) = 0",
                                     "Toupcam_get_ExpoAGainRange(h1, 100, 300, 100) = 0",
                                     "Toupcam_get_MaxSpeed(h1) = 3"));
}

TEST_F(PTDeviceProperties, every_call_makes_new_objects) {
    load(plainCamera());
    const QList<PDeviceProperty*> more = device->getSupportProperties();
    EXPECT_EQ(more.size(), device->supportProperties().size());
    for (PDeviceProperty* property : more)
        EXPECT_FALSE(device->supportProperties().contains(property));
    qDeleteAll(more);
}

// ---- Groups.

namespace {

struct GroupRow {
    const char* id;
    const char* title;
    QStringList members;
};

} // namespace

TEST_F(PTDeviceProperties, the_groups_have_their_members_in_order) {
    load(plainCamera());
    const std::vector<GroupRow> expected{
        {"exposure", "Exposure settings", words("extexposure")},
        {"wb", "White balance", words("tint temp awbonce")},
        {"color", "Color",
         words("contrast hue saturation brightness gamma chrome negative colormatrix")},
        {"binning", "Binning", words("binning")},
        {"frame", "Frame", words("rotate vflip hflip roi")},
        {"speed", "Speed", words("speed")},
        {"backlight", "Backlight compensation", words("backlight")},
        {"cooling", "Cooling", {}},
    };
    const QList<PDevicePropertyGroup*>& groups = device->supportPropertyGroups();
    ASSERT_EQ(groups.size(), qsizetype(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const PDevicePropertyGroup* const group = groups.at(qsizetype(i));
        EXPECT_EQ(group->id(), QString::fromLatin1(expected[i].id));
        EXPECT_EQ(group->title(), QString::fromLatin1(expected[i].title));
        EXPECT_EQ(propertyIds(group), expected[i].members) << expected[i].id;
    }
}
