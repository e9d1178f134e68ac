// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrArray.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>

#include <cerrno>

namespace {

class ZarrArray : public FolderTest {
protected:
    PZarrFolder recording;
    PZarrArray array{recording, u"3"_qs, {30, 20}, 2};

    void SetUp() override {
        ASSERT_TRUE(recording.create(path(u"a"_qs)).isOk());
        ASSERT_TRUE(array.create().isOk());
    }
    QStringList names() const {
        return QDir(recording.path(u"3"_qs))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    void writeFrame() {
        ASSERT_TRUE(array.writeChunk(0, "zero").isOk());
        ASSERT_TRUE(array.writeChunk(1, "one").isOk());
    }
};

TEST_F(ZarrArray, a_frame_appears_with_all_its_chunks_or_not_at_all) {
    writeFrame();
    EXPECT_EQ(names(), QStringList(u".part"_qs));
    ASSERT_TRUE(array.publish(0).isOk());
    EXPECT_EQ(names(), QStringList(u"0"_qs));
    EXPECT_EQ(readFile(recording.path(u"3/0/0/0/0"_qs)), QByteArray("zero"));
    EXPECT_EQ(readFile(recording.path(u"3/0/1/0/0"_qs)), QByteArray("one"));
}

TEST_F(ZarrArray, the_next_frame_has_its_own_folder_after_the_recording_got_its_name) {
    writeFrame();
    ASSERT_TRUE(array.publish(0).isOk());
    ASSERT_TRUE(recording.giveName().isOk());
    writeFrame();
    ASSERT_TRUE(array.publish(1).isOk());
    EXPECT_EQ(readFile(path(u"a/3/1/1/0/0"_qs)), QByteArray("one"));
    EXPECT_EQ(array.countFrames(2), 2U);
}

TEST_F(ZarrArray, the_number_of_frames_is_in_the_metadata) {
    for (const char* count : {"1", "7"}) {
        ASSERT_TRUE(array.setFrames(QByteArray(count).toULongLong()).isOk());
        const QByteArray text = readFile(recording.path(u"3/.zarray"_qs)).simplified();
        EXPECT_TRUE(text.contains(QByteArray("\"shape\": [ ") + count + ", 2, 20, 30 ]"))
            << text.toStdString();
        EXPECT_EQ(names(), QStringList(u".zarray"_qs));
    }
}

TEST_F(ZarrArray, a_frame_is_dropped_wherever_it_is) {
    writeFrame();
    array.drop(0);
    EXPECT_EQ(names(), QStringList());
    writeFrame();
    ASSERT_TRUE(array.publish(0).isOk());
    array.drop(0);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ZarrArray, a_folder_with_the_name_of_the_next_frame_is_not_replaced_or_removed) {
    ASSERT_TRUE(QDir().mkpath(recording.path(u"3/0/mine"_qs)));
    writeFrame();
    EXPECT_EQ(array.publish(0).reason(), qt_error_string(ENOTEMPTY));
    array.drop(0);
    EXPECT_EQ(names(), QStringList(u"0"_qs));
    EXPECT_TRUE(QDir(recording.path(u"3/0/mine"_qs)).exists());
}

TEST_F(ZarrArray, only_the_frames_that_are_expected_are_counted) {
    for (const char* name : {"3/0", "3/1", "3/5", "3/.part", "3/x"})
        ASSERT_TRUE(QDir().mkdir(recording.path(QString::fromLatin1(name))));
    writeFile(recording.path(u"3/2"_qs), "not a folder");
    EXPECT_EQ(array.countFrames(3), 2U);
}

TEST_F(ZarrArray, a_folder_that_is_gone_is_the_reason_for_a_failure) {
    ASSERT_TRUE(QDir(recording.path(u"3"_qs)).removeRecursively());
    EXPECT_EQ(array.writeChunk(0, "zero").reason(), qt_error_string(ENOENT));
    EXPECT_EQ(array.countFrames(1), 0U);
}

} // namespace
