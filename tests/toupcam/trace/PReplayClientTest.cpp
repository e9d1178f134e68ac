// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayClient.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

struct Received {
    int frames = 0;
    int lastByte = -1;
};

class PReplayClientTest : public testing::Test {
protected:
    PReplayClientTest() {
        callback.kind = PReplayCallback::Kind::Data;
        callback.handle = 1;
        callback.header = BITMAPINFOHEADER{};
        client.cameras[1].data = {receive, &received};
    }

    static void receive(const void* data, const BITMAPINFOHEADER* header, int /*isSnapshot*/,
                        void* context) {
        auto* const received = static_cast<Received*>(context);
        ++received->frames;
        received->lastByte = static_cast<const unsigned char*>(data)[header->biSizeImage - 1];
    }
    void run() {
        const std::function<void()> prepared = client.prepare(callback, frames);
        ASSERT_TRUE(prepared);
        prepared();
    }

    PReplayClient client;
    PReplayCallback callback;
    PReplayFrames frames;
    Received received;
};

TEST_F(PReplayClientTest, a_frame_has_its_pixels) {
    callback.header->biSizeImage = 8;
    callback.pixels = PReplayPixels{8, 65, std::nullopt};
    run();
    EXPECT_EQ(received.frames, 1);
    EXPECT_EQ(received.lastByte, 65 + 7);
    EXPECT_EQ(frames.notice(), QString());
}

TEST_F(PReplayClientTest, a_frame_whose_header_does_not_add_up_has_as_many_bytes_as_it_declares) {
    callback.header->biSizeImage = std::numeric_limits<unsigned>::max();
    callback.pixels = PReplayPixels{};
    run();
    EXPECT_EQ(received.frames, 1);
    EXPECT_EQ(received.lastByte, 0);
}

TEST_F(PReplayClientTest, a_frame_for_which_there_is_no_memory_is_left_out_with_a_notice) {
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max() / 2;
    callback.pixels = PReplayPixels{most, 65, std::nullopt};
    run();
    EXPECT_EQ(received.frames, 0);
    EXPECT_EQ(frames.notice(),
              u"there is no memory for a frame of %1 bytes, which is left out"_qs.arg(most));
}

} // namespace
