// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PRegionMap.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

PScanAreaRange sensor(int width, int height) {
    PScanAreaRange range;
    range.bounds = QRect(0, 0, width, height);
    range.minimumWidth = 16;
    range.minimumHeight = 8;
    range.widthStep = 4;
    range.heightStep = 4;
    return range;
}

struct SnapRow {
    const char* name;
    QRect requested;
    QRect snapped;
};

class PRegionSnapTest : public RowTest<SnapRow> {};

struct MapRow {
    const char* name;
    int rotation;
    bool across;
    bool down;
    QRect onSensor; ///< of the picture's region 10, 20, 30 x 40
};

class PRegionMapTest : public RowTest<MapRow> {};

} // namespace

ROW_TEST(PRegionSnapTest, to_what_the_camera_accepts) {
    EXPECT_EQ(PRegionMap::snapped(GetParam().requested, sensor(1003, 700)), GetParam().snapped);
}

ROWS(Regions, PRegionSnapTest,
     SnapRow{"one_that_fits_stays", QRect(100, 60, 200, 100), QRect(100, 60, 200, 100)},
     SnapRow{"lengths_go_to_the_nearest_step", QRect(100, 60, 201, 99), QRect(100, 60, 200, 100)},
     SnapRow{"odd_offsets_become_even", QRect(101, 63, 200, 100), QRect(100, 62, 200, 100)},
     SnapRow{"a_small_one_grows", QRect(100, 60, 3, 3), QRect(100, 60, 16, 8)},
     SnapRow{"one_at_the_edge_moves_inside", QRect(1000, 698, 40, 40), QRect(962, 660, 40, 40)},
     SnapRow{"one_beyond_the_corner_moves_inside", QRect(-50, -9, 40, 40), QRect(0, 0, 40, 40)},
     SnapRow{"one_larger_than_the_sensor_shrinks", QRect(0, 0, 5000, 5000),
             QRect(0, 0, 1000, 700)});

TEST(PRegionMapSnapTest, where_no_region_fits_there_is_none) {
    PScanAreaRange range = sensor(1003, 700);
    range.minimumWidth = 2000;
    EXPECT_TRUE(PRegionMap::snapped({0, 0, 100, 100}, range).isEmpty());
}

TEST(PRegionMapSnapTest, offsets_keep_to_the_steps_of_the_camera) {
    PScanAreaRange range = sensor(1000, 700);
    range.offsetStep = 16;
    EXPECT_EQ(PRegionMap::snapped({100, 60, 200, 100}, range), QRect(96, 48, 200, 100));
}

ROW_TEST(PRegionMapTest, a_region_of_the_picture_lies_there_on_the_sensor) {
    PRegionMap map;
    map.onSensor = QRect(0, 0, 200, 100);
    map.rotation = GetParam().rotation;
    map.isFlippedAcross = GetParam().across;
    map.isFlippedDown = GetParam().down;
    map.picture = map.rotation % 180 == 0 ? QSize(200, 100) : QSize(100, 200);
    EXPECT_EQ(map.toSensor({10, 20, 30, 40}), GetParam().onSensor);
}

ROWS(Orientations, PRegionMapTest, MapRow{"as_the_sensor", 0, false, false, QRect(10, 20, 30, 40)},
     MapRow{"flipped_across", 0, true, false, QRect(160, 20, 30, 40)},
     MapRow{"flipped_down", 0, false, true, QRect(10, 40, 30, 40)},
     MapRow{"turned_right", 90, false, false, QRect(20, 60, 40, 30)},
     MapRow{"turned_round", 180, false, false, QRect(160, 40, 30, 40)},
     MapRow{"turned_left", 270, false, false, QRect(140, 10, 40, 30)},
     MapRow{"flipped_across_then_turned_right", 90, true, false, QRect(140, 60, 40, 30)});

TEST(PRegionMapSizeTest, a_binned_picture_covers_more_of_the_sensor) {
    PRegionMap map;
    map.onSensor = QRect(0, 0, 200, 100);
    map.picture = QSize(100, 50);
    EXPECT_EQ(map.toSensor({10, 20, 30, 10}), QRect(20, 40, 60, 20));
}

TEST(PRegionMapSizeTest, a_region_within_a_region_counts_from_its_corner) {
    PRegionMap map;
    map.onSensor = QRect(40, 60, 200, 100);
    map.picture = QSize(200, 100);
    EXPECT_EQ(map.toSensor({10, 20, 30, 40}), QRect(50, 80, 30, 40));
}
