// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeDescription.h>

#include <apps/common/TestFrames.h>
#include <apps/common/reading/OmeXml.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

class OmeDescription : public testing::Test {
protected:
    POmeDescription description{{u"/a/run.ome.tif"_qs,
                                 {u"Small-S0001"_qs, u"Small"_qs, u"S0001"_qs, false},
                                 {},
                                 0.25,
                                 std::nullopt}};
    const QImage colour{3, 2, QImage::Format_BGR888};

    void add(quint64 number, std::chrono::milliseconds arrived) {
        const PDeviceFrame frame = testFrame(number, arrived);
        description.add(*frame.stamp, colour);
        description.noteWritten(*frame.stamp);
    }
};

TEST_F(OmeDescription, the_first_picture_decides_which_others_fit) {
    const QImage grey(3, 2, QImage::Format_Grayscale8);
    EXPECT_TRUE(description.fits(grey));
    add(1, 0ms);
    EXPECT_TRUE(description.fits(colour));
    EXPECT_TRUE(description.fits(QImage(3, 2, QImage::Format_RGB888)));
    EXPECT_FALSE(description.fits(grey));
    EXPECT_FALSE(description.fits(QImage(4, 2, QImage::Format_BGR888)));
    EXPECT_FALSE(description.fits(QImage(3, 3, QImage::Format_BGR888)));
}

TEST_F(OmeDescription, a_frame_that_was_not_written_is_not_described) {
    add(1, 0ms);
    description.add(*testFrame(2, 10ms).stamp, colour);
    EXPECT_EQ(description.frames(), 2U);
    description.removeLast();
    add(3, 30ms);
    const OmeXml xml(description.toFinishedXml({}));
    EXPECT_EQ(xml.complaints(), QString());
    ASSERT_EQ(xml.elements("Plane").size(), 2);
    EXPECT_EQ(xml.elements("Plane").at(1).attributes.value(u"DeltaT"_qs), u"0.03"_qs);
    EXPECT_EQ(xml.note(u"Frames"_qs), u"1, 3"_qs);
    EXPECT_EQ(xml.attribute("Image", "Name"), u"run.ome.tif"_qs);
    EXPECT_EQ(xml.attribute("Pixels", "PhysicalSizeX"), u"0.25"_qs);
}

TEST_F(OmeDescription, an_unfinished_document_says_where_the_times_are) {
    const PDeviceFrame frame = testFrame(1, 0ms);
    description.add(*frame.stamp, colour);
    const OmeXml xml(description.toUnfinishedXml(*frame.stamp, u"the drawer"_qs).xml);
    EXPECT_EQ(xml.complaints(), QString());
    EXPECT_TRUE(xml.note(u"Complete"_qs).endsWith(u"the times of its frames are in the drawer"_qs))
        << xml.note(u"Complete"_qs).toStdString();
}

} // namespace
