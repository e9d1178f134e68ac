// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimPrerenderedSource.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// Three pictures, each filled with its place; counts how often one is painted.
class CountingSource : public PSimPrerenderedSource {
public:
    using PSimPrerenderedSource::PSimPrerenderedSource;

    mutable int painted = 0;

protected:
    unsigned count() const override { return 3; }
    bool isFixed() const override { return true; }
    void paint(unsigned index, const PSimPicture& form, std::uint8_t* out) const override {
        ++painted;
        std::fill_n(out, form.bytes(), std::uint8_t(index));
    }
};

class PSimPrerenderedSourceTest : public ::testing::Test {
protected:
    static std::shared_ptr<PSimCameraSpec> newSpec() {
        auto spec = std::make_shared<PSimCameraSpec>();
        spec->resolutions = {{16, 8, 30.0}, {8, 4, 30.0}};
        return spec;
    }
    /// The first byte of this frame.
    int take(std::uint64_t frame) {
        source.take(shot, frame, picture);
        return *picture.pixels;
    }

    CountingSource source{newSpec()};
    PSimShot shot;
    PSimPicture picture;
};

TEST_F(PSimPrerenderedSourceTest, delivers_its_pictures_in_turn_without_painting_them_again) {
    for (int frame = 0; frame < 6; ++frame)
        EXPECT_EQ(take(unsigned(frame)), frame % 3);
    EXPECT_EQ(source.painted, 3);
}

TEST_F(PSimPrerenderedSourceTest, paints_nothing_for_a_frame_that_was_prepared) {
    source.prepare(shot);
    EXPECT_EQ(source.painted, 3);
    take(0);
    EXPECT_EQ(source.painted, 3);
}

TEST_F(PSimPrerenderedSourceTest, has_pictures_of_its_own_for_each_resolution) {
    source.prepare(shot);
    shot.resolution = 1;
    take(0);
    EXPECT_EQ(source.painted, 6);
    EXPECT_EQ(picture.width, 8U);
}

/// The number of bytes in this picture of the ring that are not of its ramp: a pixel to the right,
/// or down, is one brighter. The first byte is the place in the ring.
int countWrong(const PSimPicture& picture, unsigned place) {
    const unsigned channels = picture.bits / 8;
    int wrong = picture.pixels[0] == place ? 0 : 1;
    for (unsigned y = 0; y < picture.height; ++y) {
        for (unsigned x = y == 0 ? 1 : 0; x < picture.width * channels; ++x) {
            const auto shade = std::uint8_t(x / channels + y + 16 * place);
            wrong += picture.pixels[y * picture.stride() + x] == shade ? 0 : 1;
        }
    }
    return wrong;
}

TEST(PSimRingSourceTest, paints_ramps_that_differ_from_picture_to_picture) {
    for (const unsigned bits : {8U, 24U}) {
        auto spec = std::make_shared<PSimCameraSpec>();
        spec->resolutions = {{601, 300, 30.0}}; // more pixels than levels, both ways
        spec->bits = bits;
        spec->source.ringFrames = 2;
        PSimRingSource source(spec);
        PSimPicture picture;
        for (unsigned frame = 0; frame < 2; ++frame) {
            source.take({}, frame, picture);
            EXPECT_EQ(countWrong(picture, frame), 0) << bits << " bits, picture " << frame;
        }
    }
}

} // namespace
