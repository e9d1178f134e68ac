// SPDX-License-Identifier: MIT
#include <PCd/frame/PCdDipUtils.h>

#include <PCd/frame/FrameHelpers.h>

#include <gtest/gtest.h>

TEST(PCdDipUtils, makes_a_frame_without_a_stamp_of_an_image_that_did_not_come_through_a_device) {
    const PImage image = smallImage();
    const PDeviceFrame frame = PCdDipUtils::imageAsDeviceFrame(image);
    EXPECT_EQ(frame.stamp, nullptr);
    EXPECT_EQ(frame.image.rawData(PDIP::AccessMode::Read).constData(),
              image.rawData(PDIP::AccessMode::Read).constData());
}

TEST(PCdDipUtils, keeps_the_stamp_of_an_image) {
    const auto stamp = std::make_shared<PFrameStamp>();
    PImage image = smallImage();
    image.setAttachment(stamp);
    EXPECT_EQ(PCdDipUtils::imageAsDeviceFrame(image).stamp, stamp);
}

TEST(PCdDipUtils, does_not_mistake_another_attachment_for_a_stamp) {
    PImage image = smallImage();
    image.setAttachment(std::make_shared<PImageAttachment>());
    EXPECT_EQ(PCdDipUtils::imageAsDeviceFrame(image).stamp, nullptr);
}
