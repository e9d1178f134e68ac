// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstBuffer.h>

#include <gstreamer/GstFixture.h>

#include <cstring>

namespace {

class PGstBufferTest : public GstFixture {};

} // namespace

TEST_F(PGstBufferTest, a_buffer_is_the_image_s_own_memory_and_keeps_it) {
    PImage image;
    ASSERT_TRUE(image.create(5, 3, PDIP::ColorFormat::Gray));
    std::memset(image.rawData(PDIP::AccessMode::Write).data(), 7, image.dataSize());
    const unsigned char* const bytes =
        std::as_const(image).rawData(PDIP::AccessMode::Read).constData();
    const std::size_t size = image.dataSize();
    const GstPtr<GstBuffer> buffer(PGstBuffer::wrap(image));
    image = PImage();
    GstMapInfo map;
    ASSERT_TRUE(gst_buffer_map(buffer.get(), &map, GST_MAP_READ));
    EXPECT_EQ(map.data, bytes);
    EXPECT_EQ(map.size, size);
    EXPECT_EQ(map.data[size - 1], 7);
    gst_buffer_unmap(buffer.get(), &map);
}

TEST_F(PGstBufferTest, writing_leaves_the_image_as_it_is) {
    PImage image;
    ASSERT_TRUE(image.create(4, 4, PDIP::ColorFormat::Gray));
    std::memset(image.rawData(PDIP::AccessMode::Write).data(), 7, image.dataSize());
    const GstPtr<GstBuffer> buffer(PGstBuffer::wrap(image));
    GstMapInfo map;
    ASSERT_TRUE(gst_buffer_map(buffer.get(), &map, GST_MAP_READWRITE)); // a copy
    map.data[0] = 9;
    gst_buffer_unmap(buffer.get(), &map);
    EXPECT_EQ(std::as_const(image).rawData(PDIP::AccessMode::Read).constData()[0], 7);
}

TEST_F(PGstBufferTest, an_empty_image_has_no_buffer) {
    EXPECT_EQ(PGstBuffer::wrap(PImage()), nullptr);
}
