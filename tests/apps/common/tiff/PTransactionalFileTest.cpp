// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTransactionalFile.h>

#include <apps/common/file/BytesOnDisk.h>
#include <apps/common/file/PFileRoom.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>

#include <cerrno>
#include <limits>

#include <unistd.h>

namespace {

class TransactionalFile : public FolderTest {
protected:
    const QString name = path(u"grown"_qs);
    PTransactionalFile file;

    void SetUp() override {
        ASSERT_TRUE(file.create(name).isOk());
        ASSERT_TRUE(file.giveName().isOk());
    }
    bool write(qint64 offset, const QByteArray& bytes) {
        return file.write(offset, bytes.constData(), bytes.size());
    }
    QByteArray read(qint64 offset, qint64 count) const {
        QByteArray bytes(count, '\0');
        const qint64 got = file.read(offset, bytes.data(), count);
        return bytes.left(got);
    }
    QByteArray onDisk() const { return readFile(name); }
    qint64 bytesOnDisk() const { return countBytesOnDisk(name); }
};

TEST_F(TransactionalFile, a_file_that_exists_is_refused_and_left_alone) {
    writeFile(path(u"mine"_qs), "mine");
    PTransactionalFile other;
    const PStatus status = other.create(path(u"mine"_qs));
    EXPECT_FALSE(status.isOk());
    EXPECT_FALSE(status.reason().isEmpty());
    EXPECT_EQ(readFile(path(u"mine"_qs)), QByteArray("mine"));
}

TEST_F(TransactionalFile, a_link_that_leads_nowhere_is_refused_and_not_followed) {
    ASSERT_TRUE(QFile::link(path(u"nowhere"_qs), path(u"link"_qs)));
    PTransactionalFile other;
    EXPECT_FALSE(other.create(path(u"link"_qs)).isOk());
    EXPECT_FALSE(QFile::exists(path(u"nowhere"_qs)));
}

TEST_F(TransactionalFile, without_a_name_it_leaves_no_file) {
    {
        PTransactionalFile other;
        ASSERT_TRUE(other.create(path(u"other"_qs)).isOk());
        EXPECT_TRUE(other.write(0, "abc", 3));
        EXPECT_TRUE(other.commit());
        EXPECT_FALSE(QFile::exists(path(u"other"_qs)));
        EXPECT_TRUE(other.close().isOk());
    }
    EXPECT_EQ(QDir(path(QString())).entryList(QDir::Files | QDir::Hidden),
              QStringList(u"grown"_qs));
}

TEST_F(TransactionalFile, a_name_that_was_taken_meanwhile_is_left_alone) {
    PTransactionalFile other;
    ASSERT_TRUE(other.create(path(u"other"_qs)).isOk());
    writeFile(path(u"other"_qs), "mine");
    EXPECT_EQ(other.giveName().reason(), qt_error_string(EEXIST));
    EXPECT_TRUE(other.close().isOk());
    EXPECT_EQ(readFile(path(u"other"_qs)), QByteArray("mine"));
}

TEST_F(TransactionalFile, truncated_by_another_program_it_takes_no_more_bytes) {
    write(0, "abcdef");
    ASSERT_TRUE(file.commit());
    ASSERT_TRUE(QFile::resize(name, 2));
    EXPECT_FALSE(write(6, "new"));
    EXPECT_EQ(file.errorString(), u"the file was truncated while it was being written"_qs);
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(onDisk(), QByteArray("ab")) << "filled up with zeros";
    EXPECT_EQ(file.close().reason(), u"the file was truncated while it was being written"_qs);
}

TEST_F(TransactionalFile, truncated_in_the_middle_of_a_step_it_does_not_complete_it) {
    write(0, "abcdef");
    ASSERT_TRUE(file.commit());
    write(0, "X");
    write(6, "new");
    ASSERT_TRUE(QFile::resize(name, 7));
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(onDisk(), QByteArray("abcdef"));
}

TEST_F(TransactionalFile, new_bytes_are_in_the_file_at_once) {
    EXPECT_TRUE(write(0, "abc"));
    EXPECT_EQ(onDisk(), QByteArray("abc"));
    EXPECT_EQ(file.size(), 3);
}

TEST_F(TransactionalFile, reserved_room_does_not_change_what_is_in_the_file) {
    write(0, "abc");
    file.reserve(1'000'000);
    EXPECT_EQ(onDisk(), QByteArray("abc"));
    EXPECT_EQ(file.size(), 3);
    EXPECT_TRUE(write(3, "def"));
    ASSERT_TRUE(file.commit());
    EXPECT_EQ(onDisk(), QByteArray("abcdef"));
}

TEST_F(TransactionalFile, reserved_room_that_was_not_used_is_given_back_at_the_end) {
    constexpr qint64 reserved = 1'000'000;
    file.reserve(reserved);
    QFile other(path(u"other"_qs));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    PFileRoom::reserve(other.handle(), 0, reserved);
    const bool canReserve = countBytesOnDisk(other.fileName()) >= reserved; // not every file system
    EXPECT_EQ(bytesOnDisk() >= reserved, canReserve);
    write(0, "abc");
    ASSERT_TRUE(file.commit());
    EXPECT_EQ(bytesOnDisk() >= reserved, canReserve);
    EXPECT_TRUE(file.close().isOk());
    EXPECT_LT(bytesOnDisk(), reserved);
}

TEST_F(TransactionalFile, room_that_the_disk_does_not_have_is_not_a_failure) {
    file.reserve(std::numeric_limits<qint64>::max() / 2);
    EXPECT_TRUE(write(0, "abc"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(onDisk(), QByteArray("abc"));
}

TEST_F(TransactionalFile, bytes_over_older_ones_are_in_the_file_when_the_step_is_whole) {
    write(0, "abcdef");
    ASSERT_TRUE(file.commit());
    EXPECT_TRUE(write(1, "XY"));
    EXPECT_TRUE(write(6, "new"));
    EXPECT_EQ(onDisk(), QByteArray("abcdefnew"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(onDisk(), QByteArray("aXYdefnew"));
}

TEST_F(TransactionalFile, of_bytes_written_twice_over_older_ones_only_the_last_reach_the_file) {
    write(0, "abcdef");
    ASSERT_TRUE(file.commit());
    write(1, "00");
    write(1, "XY");
    EXPECT_EQ(onDisk(), QByteArray("abcdef"));
    ASSERT_TRUE(file.commit());
    EXPECT_EQ(onDisk(), QByteArray("aXYdef"));
}

TEST_F(TransactionalFile, reading_includes_what_is_held_back) {
    write(0, "abcdef");
    ASSERT_TRUE(file.commit());
    write(2, "XY");
    EXPECT_EQ(read(0, 6), QByteArray("abXYef"));
    EXPECT_EQ(read(3, 1), QByteArray("Y"));
    EXPECT_EQ(read(4, 9), QByteArray("ef"));
}

TEST_F(TransactionalFile, an_undone_step_leaves_no_trace) {
    write(0, "abcdef");
    ASSERT_TRUE(file.commit());
    write(0, "X");
    write(6, "new");
    file.rollBack();
    EXPECT_EQ(onDisk(), QByteArray("abcdef"));
    EXPECT_EQ(file.size(), 6);
    EXPECT_EQ(read(0, 6), QByteArray("abcdef"));
}

TEST_F(TransactionalFile, a_step_that_does_not_fit_on_the_disk_is_undone_and_the_reason_reported) {
    write(0, "abcdef");
    ASSERT_TRUE(file.commit());
    {
        const FileSizeLimit limit(10);
        write(0, "X");
        EXPECT_FALSE(write(6, "too long"));
        EXPECT_FALSE(write(6, "t"));
        EXPECT_FALSE(file.commit());
    }
    EXPECT_EQ(file.errorString(), qt_error_string(EFBIG));
    EXPECT_EQ(onDisk(), QByteArray("abcdef"));
    EXPECT_TRUE(write(6, "g"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(onDisk(), QByteArray("abcdefg"));
}

TEST_F(TransactionalFile, it_grows_beyond_4_gib) {
    const qint64 far = (qint64(5) << 30) + 3; // a hole before it takes no room on the disk
    write(0, "abc");
    ASSERT_TRUE(write(far, "end"));
    ASSERT_TRUE(file.commit());
    EXPECT_TRUE(write(far, "END"));
    EXPECT_EQ(file.size(), far + 3);
    EXPECT_EQ(read(far - 1, 9), QByteArray("\0END", 4));
    file.rollBack();
    EXPECT_EQ(read(far, 9), QByteArray("end"));
}

TEST_F(TransactionalFile, closing_undoes_an_incomplete_step) {
    write(0, "abc");
    ASSERT_TRUE(file.commit());
    write(3, "def");
    EXPECT_TRUE(file.close().isOk());
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(onDisk(), QByteArray("abc"));
    EXPECT_TRUE(file.close().isOk());
}

TEST_F(TransactionalFile, a_system_that_cannot_close_it_is_reported) {
    struct stat named {};
    ASSERT_EQ(stat(QFile::encodeName(name).constData(), &named), 0);
    for (const QFileInfo& open : QDir(u"/proc/self/fd"_qs).entryInfoList(QDir::Files)) {
        struct stat opened {};
        const int descriptor = open.fileName().toInt();
        if (fstat(descriptor, &opened) == 0 && opened.st_ino == named.st_ino &&
            opened.st_dev == named.st_dev) {
            ASSERT_EQ(::close(descriptor), 0);
        }
    }
    EXPECT_EQ(file.close().reason(), qt_error_string(EBADF));
}

} // namespace
