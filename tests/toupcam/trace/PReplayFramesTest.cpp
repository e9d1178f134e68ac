// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayFrames.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

namespace {

constexpr quint32 checksumOfDigits = 0xcbf43926; // of "123456789"

class PReplayFramesTest : public FolderTest {
protected:
    QByteArray read(const PReplayPixels& pixels) {
        QByteArray bytes(qsizetype(pixels.bytes), 'x');
        frames.read(pixels, reinterpret_cast<unsigned char*>(bytes.data()));
        return bytes;
    }
    PReplayFrames frames;
};

TEST_F(PReplayFramesTest, recorded_pixels_are_those_of_the_file) {
    writeFile(path(u"frames"_qs), "ab123456789c");
    frames.open(path(u"frames"_qs));
    EXPECT_EQ(read({9, checksumOfDigits, 2}), "123456789");
    EXPECT_EQ(frames.notice(), QString());
}

TEST_F(PReplayFramesTest, pixels_that_were_not_recorded_are_a_pattern) {
    EXPECT_EQ(read({3, 65, std::nullopt}), "ABC");
    EXPECT_EQ(frames.notice(), QString());
}

TEST_F(PReplayFramesTest, pixels_with_another_checksum_are_a_pattern_and_are_reported) {
    writeFile(path(u"frames"_qs), "ab123456780c");
    frames.open(path(u"frames"_qs));
    EXPECT_EQ(read({9, checksumOfDigits, 2}).left(3), QByteArray("\x26\x27\x28"));
    EXPECT_EQ(frames.notice(),
              u"\"%1\" does not have the frame with the checksum 0xcbf43926 at byte 2, so it is a "
              "pattern"_qs.arg(path(u"frames"_qs)));
}

TEST_F(PReplayFramesTest, a_file_that_is_too_short_is_reported) {
    writeFile(path(u"frames"_qs), "ab12345678");
    frames.open(path(u"frames"_qs));
    EXPECT_EQ(read({9, checksumOfDigits, 2}).left(1), QByteArray("\x26"));
    EXPECT_FALSE(frames.notice().isEmpty());
}

TEST_F(PReplayFramesTest, a_file_that_is_missing_is_reported) {
    frames.open(path(u"frames"_qs));
    EXPECT_EQ(read({3, 65, 0}), "ABC");
    EXPECT_EQ(frames.notice(),
              u"\"%1\" cannot be read, so frames are patterns: No such file or directory"_qs.arg(
                  path(u"frames"_qs)));
}

TEST_F(PReplayFramesTest, a_device_is_not_read) {
    frames.open(u"/dev/zero"_qs);
    EXPECT_EQ(frames.notice(), u"\"/dev/zero\" is not a file, so frames are patterns"_qs);
}

} // namespace
