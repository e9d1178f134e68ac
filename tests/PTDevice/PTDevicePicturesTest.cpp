// SPDX-License-Identifier: MIT
// The effect of properties on the picture, measured on its pixels.
#include <PTDevice/SimFixture.h>

#include <PCd/PEnumeration.h>
#include <PCd/frame/PFrameStamp.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PPropertyText.h>

#include <support/QtPrinters.h>

#include <QImage>

#include <gmock/gmock.h>

#include <array>

namespace {

/// Means of the channels of a picture, 0 … 255.
struct Means {
    double red = 0;
    double green = 0;
    double blue = 0;

    double all() const { return (red + green + blue) / 3; }
    double colour() const { return std::max({red, green, blue}) - std::min({red, green, blue}); }
};

Means computeMeans(const QImage& picture) {
    Means sums;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            sums.red += qRed(pixel);
            sums.green += qGreen(pixel);
            sums.blue += qBlue(pixel);
        }
    }
    const double count = double(picture.width()) * picture.height();
    return {sums.red / count, sums.green / count, sums.blue / count};
}

/// A streaming camera. A property is set as text, and the first picture with it is measured.
class PTDevicePictures : public SimFixture {
protected:
    ~PTDevicePictures() override {
        if (device != nullptr)
            device->stopStream();
    }

    void stream(const char* source) {
        loadScene({SimCameraText()
                       .withSource(source)
                       .withResolutions(R"([{"width": 64, "height": 48, "fps": 200},
                                            {"width": 32, "height": 24, "fps": 200}])")
                       .set("exposure", R"({"auto": false})")});
        device = open();
        device->supportProperties();
        ASSERT_TRUE(device->link().isOk());
        ASSERT_TRUE(device->startStream().isOk());
    }
    void streamEvenLight() { stream(R"({"kind": "flat", "level": 0.5})"); }
    void streamColouredLight() { stream(R"({"kind": "flat", "level": 0.4, "lightKelvin": 4000})"); }
    void streamPatches() { stream(R"({"kind": "patches"})"); }

    void set(const char* id, const char* text) const {
        PDeviceProperty* const property = device->getProperty(id);
        ASSERT_NE(property, nullptr) << id;
        const QVariant value = PPropertyText::toValue(
            QString::fromUtf8(text), property->valueInner(), property->rangeInner());
        ASSERT_TRUE(value.isValid()) << text;
        property->setValue(value);
        property->updateValueFromDevice();
        EXPECT_EQ(property->valueInner(), value) << id << " = " << text;
    }
    /// A frame whose exposure begins after this call.
    QImage picture() const {
        const auto sequence = [this] {
            const PDeviceFrame frame = device->newestFrame();
            return frame.stamp ? frame.stamp->sequence : 0;
        };
        const quint64 before = sequence();
        // The current frame and the next one to arrive may still have the earlier setting.
        EXPECT_TRUE(waitUntil([&] { return sequence() > before + 2; }));
        return device->newestFrame().image.toQImage().convertToFormat(QImage::Format_RGB32);
    }
    Means means() const { return computeMeans(picture()); }
    Means meansWith(const char* id, const char* text) const {
        set(id, text);
        return means();
    }

    std::unique_ptr<PTDevice> device;
};

/// The colours in the middles of the three patches, from left to right.
std::array<QRgb, 3> readPatches(const QImage& picture) {
    const auto at = [&](int patch) {
        return picture.pixel(picture.width() * (2 * patch + 1) / 6, picture.height() / 2);
    };
    return {at(0), at(1), at(2)};
}

constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb green = qRgb(0, 255, 0);
constexpr QRgb blue = qRgb(0, 0, 255);

} // namespace

// ---- Light.

TEST_F(PTDevicePictures, twice_the_exposure_time_is_twice_the_light) {
    streamEvenLight();
    const double once = meansWith("autoexpottime", "4000").green;
    const double twice = meansWith("autoexpottime", "8000").green;
    EXPECT_NEAR(twice / once, 2, 0.15); // the offset of the sensor does not double
}

TEST_F(PTDevicePictures, twice_the_gain_is_twice_the_light) {
    streamEvenLight();
    set("autoexpottime", "4000");
    const double once = meansWith("autoexpogain", "100").green;
    const double twice = meansWith("autoexpogain", "200").green;
    EXPECT_NEAR(twice / once, 2, 0.15);
}

TEST_F(PTDevicePictures, auto_exposure_moves_towards_its_target) {
    streamEvenLight();
    set("autoexpotarget", "80");
    set("autoexponeable", "on");
    EXPECT_TRUE(waitUntil([&] { return std::abs(means().all() - 80) < 8; }));
    set("autoexpotarget", "160");
    EXPECT_TRUE(waitUntil([&] { return std::abs(means().all() - 160) < 12; }));
}

TEST_F(PTDevicePictures, brightness_adds_counts) {
    streamEvenLight();
    const double before = means().green;
    EXPECT_NEAR(meansWith("brightness", "30").green - before, 30, 3);
    EXPECT_NEAR(meansWith("brightness", "-30").green - before, -30, 3);
}

TEST_F(PTDevicePictures, gamma_above_100_lightens_and_below_darkens) {
    streamEvenLight();
    const double before = means().green;
    EXPECT_GT(meansWith("gamma", "160").green, before + 10);
    EXPECT_LT(meansWith("gamma", "60").green, before - 10);
}

TEST_F(PTDevicePictures, contrast_moves_dark_away_from_the_middle) {
    streamEvenLight();
    set("autoexpottime", "4000");
    const double before = means().green;
    ASSERT_LT(before, 100);
    EXPECT_LT(meansWith("contrast", "50").green, before - 10);
    EXPECT_GT(meansWith("contrast", "-50").green, before + 10);
}

TEST_F(PTDevicePictures, negative_inverts_the_light) {
    streamEvenLight();
    const double before = means().green;
    EXPECT_NEAR(meansWith("negative", "on").green, 255 - before, 3);
}

// ---- Colour.

TEST_F(PTDevicePictures, a_lower_temperature_makes_warm_light_white) {
    streamColouredLight();
    const Means before = means();
    EXPECT_GT(before.red, before.blue + 20);
    const Means after = meansWith("temp", "4000");
    EXPECT_LT(after.colour(), 4);
}

TEST_F(PTDevicePictures, more_tint_is_more_green) {
    streamEvenLight();
    set("autoexpottime", "4000");
    const Means before = means();
    const Means after = meansWith("tint", "1500");
    EXPECT_NEAR(after.green / before.green, 1.5, 0.1);
    EXPECT_NEAR(after.red, before.red, 3);
}

TEST_F(PTDevicePictures, without_white_balance_gain_warm_light_stays_warm) {
    streamColouredLight();
    const Means balanced = meansWith("temp", "4000");
    const Means raw = meansWith("wbgain", "Disable");
    EXPECT_GT(raw.colour(), balanced.colour() + 20);
}

TEST_F(PTDevicePictures, without_the_colour_matrix_colours_are_paler) {
    streamColouredLight();
    const double with = means().colour();
    EXPECT_LT(meansWith("colormatrix", "Disable").colour(), with - 5);
}

TEST_F(PTDevicePictures, more_saturation_is_more_colour_and_none_is_grey) {
    streamColouredLight();
    const double before = means().colour();
    EXPECT_GT(meansWith("saturation", "200").colour(), before * 1.3);
    EXPECT_LT(meansWith("saturation", "0").colour(), 2);
}

TEST_F(PTDevicePictures, chrome_is_grey) {
    streamColouredLight();
    EXPECT_LT(meansWith("chrome", "on").colour(), 1);
}

TEST_F(PTDevicePictures, a_hue_of_120_degrees_turns_red_to_green) {
    streamPatches();
    EXPECT_EQ(readPatches(picture()), (std::array<QRgb, 3>{red, green, blue}));
    set("hue", "120");
    const QRgb turned = readPatches(picture())[0];
    EXPECT_GT(qGreen(turned), qRed(turned) + 50);
    EXPECT_GT(qGreen(turned), qBlue(turned) + 50);
}

// ---- Geometry.

TEST_F(PTDevicePictures, a_horizontal_flip_swaps_left_and_right) {
    streamPatches();
    set("hflip", "on");
    EXPECT_EQ(readPatches(picture()), (std::array<QRgb, 3>{blue, green, red}));
}

TEST_F(PTDevicePictures, a_vertical_flip_swaps_top_and_bottom) {
    // Rotated, the patches are above each other.
    streamPatches();
    set("rotate", "90");
    const QImage upright = picture();
    const auto third = [](const QImage& image, int n) {
        return image.pixel(image.width() / 2, image.height() * (2 * n + 1) / 6);
    };
    EXPECT_EQ(third(upright, 0), red);
    set("rotate", "0");
    set("vflip", "on");
    EXPECT_EQ(readPatches(picture()), (std::array<QRgb, 3>{red, green, blue}));
    set("rotate", "90");
    set("hflip", "on");
    EXPECT_EQ(third(picture(), 0), blue);
}

TEST_F(PTDevicePictures, a_quarter_turn_swaps_width_and_height_and_a_half_turn_the_ends) {
    streamPatches();
    set("rotate", "90");
    EXPECT_EQ(picture().size(), QSize(48, 64));
    set("rotate", "180");
    const QImage half = picture();
    EXPECT_EQ(half.size(), QSize(64, 48));
    EXPECT_EQ(readPatches(half), (std::array<QRgb, 3>{blue, green, red}));
    set("rotate", "270");
    EXPECT_EQ(picture().size(), QSize(48, 64));
}

TEST_F(PTDevicePictures, a_sum_of_2x2_is_a_quarter_of_the_pixels_and_four_times_the_light) {
    streamEvenLight();
    set("autoexpottime", "2000");
    const double before = means().green;
    set("binning", "Add 2x2");
    const QImage binned = picture();
    EXPECT_EQ(binned.size(), QSize(32, 24));
    EXPECT_NEAR(computeMeans(binned).green / before, 4, 0.1);
}

TEST_F(PTDevicePictures, an_average_of_4x4_is_a_sixteenth_of_the_pixels_and_the_same_light) {
    streamEvenLight();
    const double before = means().green;
    set("binning", "Average 4x4");
    const QImage binned = picture();
    EXPECT_EQ(binned.size(), QSize(16, 12));
    EXPECT_NEAR(computeMeans(binned).green, before, 2);
}

TEST_F(PTDevicePictures, a_region_shows_that_part_of_the_picture) {
    streamPatches();
    // The middle third of the width, where the green patch is.
    set("roi", "24,12,16,24");
    const QImage part = picture();
    EXPECT_EQ(part.size(), QSize(16, 24));
    EXPECT_EQ(part.pixel(8, 12), green);
}

// ---- Changes while frames arrive.

TEST_F(PTDevicePictures, sizes_may_change_in_flight_and_no_frame_is_lost_or_misread) {
    stream(R"({"kind": "patches"})");
    for (const char* region : {"0,0,32,24", "16,8,48,40", "0,0,64,48"}) {
        set("roi", region);
        set("binning", "Average 2x2");
        set("rotate", "90");
        picture();
        set("binning", "No binning");
        set("rotate", "0");
        ASSERT_TRUE(device->setMode(device->getSupportModes().value(1)).isOk());
        EXPECT_EQ(picture().size(), QSize(32, 24));
        ASSERT_TRUE(device->setMode(device->getSupportModes().value(0)).isOk());
    }
    device->stopStream();
    EXPECT_TRUE(waitUntil([&] { return device->frameLedger().waiting == 0; }));
    const PFrameLedger ledger = device->frameLedger();
    EXPECT_GT(ledger.produced, 0U);
    EXPECT_EQ(ledger.count(PFrameOutcome::Delivered), ledger.produced);
}
