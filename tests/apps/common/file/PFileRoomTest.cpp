// SPDX-License-Identifier: MIT
#include <apps/common/file/PFileRoom.h>

#include <apps/common/file/BytesOnDisk.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <limits>

namespace {

constexpr qint64 room = 1'000'000;

class FileRoom : public FolderTest {
protected:
    FileRoom() { EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)); }

    QFile file{path(u"file"_qs)};
};

/// Not every file system reserves room; one in memory could, but nothing is gained there.
bool canReserve(const QString& path) {
    QFile other(path);
    return other.open(QIODevice::WriteOnly) &&
           ::fallocate(other.handle(), FALLOC_FL_KEEP_SIZE, 0, room) == 0 &&
           countBytesOnDisk(path) >= room;
}

} // namespace

TEST_F(FileRoom, is_reserved_in_memory_nowhere_and_elsewhere_as_far_as_possible) {
    PFileRoom::reserve(file.handle(), 0, room);
    const bool isReserved = countBytesOnDisk(file.fileName()) >= room;
    struct statfs system {};
    ASSERT_EQ(::statfs(QFile::encodeName(file.fileName()).constData(), &system), 0);
    const bool isInMemory = system.f_type == TMPFS_MAGIC;
    EXPECT_EQ(isReserved, !isInMemory && canReserve(path(u"other"_qs)));
}

TEST_F(FileRoom, leaves_the_size_of_the_file) {
    ASSERT_EQ(file.write("abc"), 3);
    PFileRoom::reserve(file.handle(), 3, room);
    EXPECT_EQ(file.size(), 3);
    EXPECT_EQ(readFile(file.fileName()), QByteArray("abc"));
}

TEST_F(FileRoom, that_does_not_exist_prevents_no_writing) {
    PFileRoom::reserve(file.handle(), 0, std::numeric_limits<qint64>::max() / 2);
    EXPECT_EQ(file.write("abc"), 3);
}

TEST_F(FileRoom, is_reserved_from_the_offset_on) {
    PFileRoom::reserve(file.handle(), 0, room);
    PFileRoom::reserve(file.handle(), room, room);
    const bool once = countBytesOnDisk(file.fileName()) >= room;
    EXPECT_EQ(countBytesOnDisk(file.fileName()) >= 2 * room, once);
}
