// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

#include <array>

namespace {

/// Four corners of different colours: upper left, upper right, lower left, lower right.
using Corners = std::array<char, 4>;

char colourName(const PushedFrame& frame, int x, int y) {
    const bool red = frame.at(x, y, 0) > 100;
    const bool green = frame.at(x, y, 1) > 100;
    const bool blue = frame.at(x, y, 2) > 100;
    return red && green && blue ? 'W' : red ? 'R' : green ? 'G' : blue ? 'B' : '?';
}

Corners readCorners(const PushedFrame& frame) {
    const int right = frame.header.biWidth - 1;
    const int bottom = frame.header.biHeight - 1;
    return {colourName(frame, 0, 0), colourName(frame, right, 0), colourName(frame, 0, bottom),
            colourName(frame, right, bottom)};
}

Corners mirrored(const Corners& c) {
    return {c[1], c[0], c[3], c[2]};
}

Corners upsideDown(const Corners& c) {
    return {c[2], c[3], c[0], c[1]};
}

Corners turnedRight(const Corners& c) {
    return {c[2], c[0], c[3], c[1]};
}

struct TurnRow {
    const char* name;
    int hFlip;
    int vFlip;
    int rotation;
};

const TurnRow turns[] = {
    {"upright", 0, 0, 0},
    {"right", 0, 0, 90},
    {"round", 0, 0, 180},
    {"left", 0, 0, 270},
    {"mirrored", 1, 0, 0},
    {"mirrored and right", 1, 0, 90},
    {"mirrored and round", 1, 0, 180},
    {"mirrored and left", 1, 0, 270},
    {"upside down", 0, 1, 0},
    {"upside down and right", 0, 1, 90},
    {"upside down and round", 0, 1, 180},
    {"upside down and left", 0, 1, 270},
    {"both flips", 1, 1, 0},
    {"both flips and right", 1, 1, 90},
    {"both flips and round", 1, 1, 180},
    {"both flips and left", 1, 1, 270},
};

class SimTurn : public SimPictureTest, public WithSimRow<TurnRow> {
protected:
    Corners expected() const {
        Corners corners = {'R', 'G', 'B', 'W'};
        if (GetParam().hFlip)
            corners = mirrored(corners);
        if (GetParam().vFlip)
            corners = upsideDown(corners);
        for (int degrees = 0; degrees < GetParam().rotation; degrees += 90)
            corners = turnedRight(corners);
        return corners;
    }
    PictureFolder m_folder;
};

ROWS_IN(rows, SimTurn, turns);

ROW_TEST(SimTurn, brings_each_corner_to_its_place) {
    const auto quarter = [](int x, int y) -> std::string {
        if (y < 34)
            return x < 51 ? std::string("\xff\0\0", 3) : std::string("\0\xff\0", 3);
        return x < 51 ? std::string("\0\0\xff", 3) : std::string("\xff\xff\xff", 3);
    };
    SimCameraText camera = pictureCamera(m_folder.paint("corners.ppm", 102, 68, quarter));
    camera.width = 102; // several bands of rows, the last one incomplete
    camera.height = 68;
    const HToupcam handle = openOnly(camera);
    ASSERT_EQ(Toupcam_put_HFlip(handle, GetParam().hFlip), S_OK);
    ASSERT_EQ(Toupcam_put_VFlip(handle, GetParam().vFlip), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_ROTATE, GetParam().rotation), S_OK);
    const PushedFrame frame = takeOne(handle);
    EXPECT_EQ(readCorners(frame), expected());
    // Nothing got lost: a quarter of the picture is red and a quarter white.
    EXPECT_NEAR(channelMean(frame, 0), 100.0, 2.0);
}

using SimOrientation = SimPictureTest;

TEST_F(SimOrientation, flips_of_a_grey_camera_work_as_well) {
    SimCameraText camera;
    camera.bits = 8;
    const HToupcam handle = openOnly(camera);
    ASSERT_EQ(Toupcam_put_HFlip(handle, 1), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_ROTATE, 90), S_OK);
    const PushedFrame frame = takeOne(handle);
    EXPECT_EQ(frame.header.biWidth, 64);
    EXPECT_EQ(frame.header.biHeight, 96);
    EXPECT_EQ(frame.at(32, 16, 0), 39);
    EXPECT_EQ(frame.at(32, 48, 0), 127);
    EXPECT_EQ(frame.at(32, 80, 0), 87);
}

} // namespace
