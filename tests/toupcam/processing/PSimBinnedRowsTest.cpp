// SPDX-License-Identifier: MIT
#include <toupcam/SimPictureSupport.h>

namespace {

class SimBinning : public SimPictureTest, public ::testing::WithParamInterface<int> {
protected:
    Transfer transfer(HToupcam handle) {
        const auto frames = take(handle, 2);
        return measureTransfer(frames[0], frames[1]);
    }
};

INSTANTIATE_TEST_SUITE_P(factors, SimBinning, ::testing::Values(2, 3, 4));

TEST_P(SimBinning, adding_makes_pictures_brighter_in_proportion) {
    const int n = GetParam();
    const HToupcam handle = openOnly(flatCamera()); // 18 counts
    const Transfer single = transfer(handle);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, n), S_OK);
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, n == 4 ? 500 : 1000), S_OK); // 13 counts: not white
    const Transfer added = transfer(handle);
    EXPECT_NEAR(added.mean, n * n * (n == 4 ? single.mean - 5 : single.mean), 2.0);
}

TEST_P(SimBinning, averaging_keeps_the_brightness_and_lowers_the_noise) {
    const int n = GetParam();
    const HToupcam handle = openOnly(flatCamera());
    const Transfer single = transfer(handle);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, 0x80 + n), S_OK);
    const Transfer averaged = transfer(handle);
    EXPECT_NEAR(averaged.mean, single.mean, 0.3);
    const double rounding = 1.0 / 12.0; // of whole counts
    EXPECT_NEAR(averaged.variance, single.variance / (n * n) + rounding, 0.1 * single.variance);
    EXPECT_LT(averaged.variance, 0.4 * single.variance);
}

TEST_P(SimBinning, adding_goes_no_further_than_white) {
    const HToupcam handle = openOnly(flatCamera());
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 12000), S_OK); // 128 counts
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, GetParam()), S_OK);
    EXPECT_NEAR(measureMean(takeOne(handle)), 255.0, 0.5);
}

using SimBinnedPatches = SimPictureTest;

TEST_F(SimBinnedPatches, averaged_patches_stay_pure) {
    const HToupcam handle = openOnly({});
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BINNING, 0x82), S_OK);
    const PushedFrame frame = takeOne(handle);
    EXPECT_EQ(frame.header.biWidth, 48);
    EXPECT_EQ(frame.header.biHeight, 32);
    EXPECT_EQ(frame.at(8, 16, 0), 255);
    EXPECT_EQ(frame.at(8, 16, 1), 0);
    EXPECT_EQ(frame.at(24, 16, 1), 255);
    EXPECT_EQ(frame.at(40, 16, 2), 255);
    EXPECT_EQ(frame.at(0, 0, 0), 0);
}

} // namespace
