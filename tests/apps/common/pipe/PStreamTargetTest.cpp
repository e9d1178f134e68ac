// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PStreamTarget.h>

#include <apps/common/pipe/TestPipe.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <memory>
#include <thread>

namespace {

using namespace std::chrono_literals;
using End = PStreamTarget::End;

class StreamTarget : public FolderTest {
protected:
    const QString file = path(u"frames"_qs);

    /// Opens a target that can be opened.
    static std::unique_ptr<PStreamTarget> open(const QString& name) {
        auto target = std::make_unique<PStreamTarget>(name);
        const std::optional<PStatus> opened = target->tryOpen();
        EXPECT_TRUE(opened && opened->isOk()) << opened.value_or(PStatus()).reason().toStdString();
        return target;
    }
    static PStatus write(PStreamTarget& target, const QByteArray& bytes) {
        return target.write(reinterpret_cast<const unsigned char*>(bytes.constData()),
                            std::size_t(bytes.size()));
    }
    /// A block device that nobody can write to, also if it is opened. Empty if there is none.
    QString makeDisk() const {
        const QByteArray made = QFile::encodeName(path(u"disk"_qs));
        if (::mknod(made.constData(), S_IFBLK | 0600, makedev(0, 0)) == 0) // no driver has these
            return QFile::decodeName(made);
        for (const QFileInfo& one : QDir(u"/dev"_qs).entryInfoList(QDir::System)) {
            struct stat found {};
            const QByteArray name = QFile::encodeName(one.filePath());
            if (::stat(name.constData(), &found) == 0 && S_ISBLK(found.st_mode) &&
                ::access(name.constData(), W_OK) != 0)
                return one.filePath();
        }
        return {};
    }
    /// Why a target cannot be opened.
    static QString refusal(const QString& name) {
        PStreamTarget target(name);
        return target.tryOpen().value_or(PStatus()).reason();
    }
};

TEST_F(StreamTarget, a_new_file_has_all_bytes_in_order) {
    const auto target = open(file);
    EXPECT_TRUE(write(*target, "one ").isOk());
    EXPECT_TRUE(write(*target, "two").isOk());
    target->endFrame();
    EXPECT_TRUE(target->close().isOk());
    EXPECT_EQ(readFile(file), "one two");
    EXPECT_EQ(target->bytes(), 7U);
    EXPECT_EQ(target->end(), End::None);
}

TEST_F(StreamTarget, a_file_that_exists_is_refused_and_stays_as_it_is) {
    writeFile(file, "mine");
    EXPECT_EQ(refusal(file), u"cannot write to \"%1\": File exists"_qs.arg(file));
    EXPECT_EQ(readFile(file), "mine");
    QFile::link(path(u"nowhere"_qs), path(u"link"_qs));
    EXPECT_EQ(refusal(path(u"link"_qs)),
              u"cannot write to \"%1\": File exists"_qs.arg(path(u"link"_qs)));
    EXPECT_FALSE(QFile::exists(path(u"nowhere"_qs)));
}

TEST_F(StreamTarget, a_folder_and_a_file_in_no_folder_are_refused) {
    EXPECT_EQ(refusal(path(u"."_qs)),
              u"cannot write to \"%1\": Is a directory"_qs.arg(path(u"."_qs)));
    EXPECT_EQ(refusal(path(u"no/frames"_qs)),
              u"cannot write to \"%1\": No such file or directory"_qs.arg(path(u"no/frames"_qs)));
}

TEST_F(StreamTarget, a_terminal_is_refused) {
    const int mine = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(mine >= 0 && grantpt(mine) == 0 && unlockpt(mine) == 0);
    const QString terminal = QString::fromLocal8Bit(ptsname(mine));
    EXPECT_EQ(refusal(terminal),
              u"\"%1\" is a terminal, which cannot show frames: expected a pipe or a file"_qs.arg(
                  terminal));
    ::close(mine);
}

TEST_F(StreamTarget, a_disk_is_refused) {
    const QString disk = makeDisk();
    ASSERT_FALSE(disk.isEmpty());
    const QString reason = u"cannot write to \"%1\": it is a disk, whose files would be lost: "
                           "expected a new file, a named pipe or another device"_qs;
    EXPECT_EQ(refusal(disk), reason.arg(disk));
    QFile::link(disk, path(u"link to it"_qs));
    EXPECT_EQ(refusal(path(u"link to it"_qs)), reason.arg(path(u"link to it"_qs)));
}

TEST_F(StreamTarget, a_file_that_cannot_grow_ends_with_the_last_whole_frame) {
    const auto target = open(file);
    EXPECT_TRUE(write(*target, "whole ").isOk());
    target->endFrame();
    const FileSizeLimit limit(8);
    EXPECT_EQ(write(*target, "partial").reason(), u"File too large"_qs);
    EXPECT_EQ(target->end(), End::Failed);
    EXPECT_TRUE(target->close().isOk());
    EXPECT_EQ(readFile(file), "whole ");
}

TEST_F(StreamTarget, a_new_file_without_a_whole_frame_is_removed) {
    EXPECT_TRUE(open(file)->close().isOk());
    EXPECT_FALSE(QFile::exists(file));
    {
        const auto target = open(file);
        EXPECT_TRUE(write(*target, "part").isOk());
    }
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(StreamTarget, a_full_device_is_named_by_the_system) {
    const auto target = open(u"/dev/full"_qs);
    EXPECT_EQ(write(*target, "x").reason(), u"No space left on device"_qs);
    EXPECT_EQ(target->end(), End::Failed);
}

TEST_F(StreamTarget, a_device_is_given_up_when_its_time_is_over) {
    const auto target = open(u"/dev/null"_qs);
    EXPECT_TRUE(write(*target, "frame").isOk());
    EXPECT_FALSE(target->isReaderGone());
    target->giveUpAfter(0ms);
    EXPECT_EQ(write(*target, "frame").reason(), u"the reader did not take the rest in time"_qs);
    EXPECT_EQ(target->end(), End::GivenUp);
    EXPECT_EQ(target->bytes(), 5U);
}

TEST_F(StreamTarget, a_named_pipe_is_open_once_it_has_a_reader) {
    TestPipe pipe(QFile::encodeName(file));
    PStreamTarget target(file);
    EXPECT_FALSE(target.tryOpen());
    EXPECT_FALSE(target.tryOpen());
    pipe.openReader();
    EXPECT_TRUE(target.tryOpen().value_or(PStatus::Failed).isOk());
    EXPECT_TRUE(write(target, "frame").isOk());
    EXPECT_EQ(pipe.read(100), "frame");
}

TEST_F(StreamTarget, a_pipe_of_which_the_reader_is_gone_is_noticed_before_something_is_written) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    const auto target = open(file);
    EXPECT_FALSE(target->isReaderGone());
    pipe.closeReader();
    EXPECT_TRUE(target->isReaderGone());
    EXPECT_EQ(target->end(), End::None);
    EXPECT_FALSE(write(*target, "x").isOk());
    EXPECT_EQ(target->end(), End::ReaderClosed);
}

TEST_F(StreamTarget, writing_to_a_pipe_waits_for_its_reader) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    const auto target = open(file);
    const QByteArray bytes = QByteArray("0123456789").repeated(300'000); // more than a pipe holds
    std::thread writer([&] { EXPECT_TRUE(write(*target, bytes).isOk()); });
    QByteArray got;
    EXPECT_TRUE(waitUntil([&] {
        got += pipe.read(1 << 20);
        return got.size() >= bytes.size();
    }));
    writer.join();
    EXPECT_EQ(got, bytes);
}

TEST_F(StreamTarget, a_reader_that_stops_is_given_up_when_its_time_is_over) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    const auto target = open(file);
    std::thread writer([&] {
        EXPECT_EQ(write(*target, QByteArray(4 << 20, 'x')).reason(),
                  u"the reader did not take the rest in time"_qs);
    });
    EXPECT_TRUE(waitUntil([&] { return target->bytes() > 0; }));
    EXPECT_EQ(target->end(), End::None);
    target->giveUpAfter(1ms);
    writer.join();
    EXPECT_EQ(target->end(), End::GivenUp);
}

TEST_F(StreamTarget, a_disk_is_given_all_the_time) {
    const auto target = open(file);
    target->giveUpAfter(0ms);
    EXPECT_TRUE(write(*target, "frame").isOk());
    EXPECT_FALSE(target->isReaderGone());
    EXPECT_EQ(PStreamTarget(file).name(), u"\"%1\""_qs.arg(file));
    EXPECT_EQ(PStreamTarget(PStreamTarget::standardOutput()).name(), u"standard output"_qs);
}

} // namespace
