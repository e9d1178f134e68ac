// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PFrameOutlet.h>

#include <apps/common/TestFrames.h>
#include <apps/common/pipe/PRawCoding.h>
#include <apps/common/pipe/PY4mCoding.h>
#include <apps/common/pipe/TestPipe.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QFile>

#include <algorithm>

namespace {

using namespace std::chrono_literals;
using Kind = PFrameSink::Kind;

/// Frames have 64 x 48 grey pixels of their number.
class FrameOutlet : public FolderTest {
protected:
    static constexpr int frameBytes = 64 * 48;
    /// A frame that has given its memory back is counted a moment later.
    static constexpr quint64 justWritten = 1;
    const QString file = path(u"frames"_qs);

    static PDeviceFrame makeFrame(quint64 number, int width = 64) {
        return testFrame(number, 10ms * (number - 1), makeSettings({}), PDIP::ColorFormat::Gray,
                         width, 48);
    }
    static QByteArray makeBytes(quint64 number) { return {frameBytes, char(number)}; }

    std::unique_ptr<PFrameOutlet>
    makeOutlet(const QString& name, std::optional<quint64> frames = std::nullopt,
               std::unique_ptr<PFrameCoding> coding = std::make_unique<PRawCoding>(),
               std::size_t memory = std::size_t(64) << 20) const {
        auto target = std::make_unique<PStreamTarget>(name);
        EXPECT_TRUE(target->tryOpen().value_or(PStatus::Failed).isOk());
        return std::make_unique<PFrameOutlet>(std::move(coding), std::move(target), frames, memory);
    }
    static void offer(PFrameOutlet& outlet, quint64 first, quint64 last) {
        for (quint64 i = first; i <= last; ++i)
            EXPECT_TRUE(outlet.takeFrame(makeFrame(i), Kind::Live));
    }
    /// Offers frames that the reader does not take until the queue is full: a pipe does not have
    /// room for all that it holds.
    static void block(PFrameOutlet& outlet) {
        EXPECT_TRUE(waitUntil([&] {
            outlet.takeFrame(makeFrame(1, 6'400), Kind::Live);
            const PFrameOutlet::Progress progress = outlet.progress();
            return progress.tally.dropped > 0 && progress.bytes > 0;
        }));
    }
    /// Waits until all is written, and closes it.
    static PFrameOutlet::Progress finish(PFrameOutlet& outlet) {
        outlet.end();
        EXPECT_TRUE(outlet.waitUntilFinished(longestFrameWait));
        const PFrameOutlet::Progress progress = outlet.progress();
        EXPECT_TRUE(progress.tally.isBalanced());
        EXPECT_EQ(progress.tally.waiting, 0U);
        EXPECT_TRUE(outlet.close().isOk());
        return progress;
    }
};

TEST_F(FrameOutlet, writes_every_frame_in_order) {
    const auto outlet = makeOutlet(file);
    offer(*outlet, 1, 5);
    const PFrameOutlet::Progress progress = finish(*outlet);
    EXPECT_EQ(progress.tally.written, 5U);
    EXPECT_EQ(progress.bytes, 5U * frameBytes);
    EXPECT_EQ(progress.error, QString());
    EXPECT_FALSE(progress.isReaderGone);
    EXPECT_EQ(readFile(file),
              makeBytes(1) + makeBytes(2) + makeBytes(3) + makeBytes(4) + makeBytes(5));
}

TEST_F(FrameOutlet, takes_no_snapshots) {
    const auto outlet = makeOutlet(file);
    EXPECT_TRUE(outlet->takeFrame(makeFrame(1), Kind::Snapshot));
    EXPECT_EQ(finish(*outlet).tally.arrived, 0U);
}

TEST_F(FrameOutlet, has_enough_after_its_number_of_frames) {
    const auto outlet = makeOutlet(file, 2);
    offer(*outlet, 1, 1);
    EXPECT_FALSE(outlet->progress().isOver);
    offer(*outlet, 2, 4);
    EXPECT_TRUE(outlet->progress().isOver);
    const POutletTally tally = finish(*outlet).tally;
    EXPECT_EQ(tally.written, 2U);
    EXPECT_EQ(tally.afterEnd, 2U);
    EXPECT_EQ(readFile(file), makeBytes(1) + makeBytes(2));
}

TEST_F(FrameOutlet, measures_the_rate_before_the_first_frame_is_written) {
    const auto outlet = makeOutlet(file, std::nullopt,
                                   std::make_unique<PY4mCoding>(PYuvConversion::Chroma::Quarter));
    offer(*outlet, 1, 6);
    EXPECT_EQ(outlet->progress().tally.waiting, 6U); // known with the seventh
    EXPECT_EQ(outlet->progress().bytes, 0U);
    offer(*outlet, 7, 7);
    EXPECT_TRUE(waitUntil([&] { return outlet->progress().tally.written == 7; }));
    finish(*outlet);
    EXPECT_TRUE(readFile(file).startsWith(
        "YUV4MPEG2 W64 H48 F100:1 Ip A1:1 Cmono XCOLORRANGE=FULL\nFRAME\n" + makeBytes(1) +
        "FRAME\n" + makeBytes(2)));
}

TEST_F(FrameOutlet, the_wait_for_the_rate_ends_before_a_frame_finds_no_room) {
    const auto outlet =
        makeOutlet(file, std::nullopt,
                   std::make_unique<PY4mCoding>(PYuvConversion::Chroma::Quarter), 3 * frameBytes);
    offer(*outlet, 1, 3);
    EXPECT_TRUE(waitUntil([&] { return outlet->progress().tally.written == 3; }));
    EXPECT_EQ(finish(*outlet).tally.dropped, 0U);
    EXPECT_TRUE(readFile(file).startsWith("YUV4MPEG2 W64 H48 F100:1 "));
}

TEST_F(FrameOutlet, with_room_for_one_frame_the_rate_is_known_from_one_that_is_dropped) {
    const auto outlet =
        makeOutlet(file, std::nullopt,
                   std::make_unique<PY4mCoding>(PYuvConversion::Chroma::Quarter), frameBytes);
    offer(*outlet, 1, 2);
    EXPECT_TRUE(waitUntil([&] { return outlet->progress().tally.written == 1; }));
    EXPECT_EQ(finish(*outlet).tally.dropped, 1U);
    EXPECT_TRUE(readFile(file).startsWith("YUV4MPEG2 W64 H48 F100:1 "));
}

TEST_F(FrameOutlet, the_end_of_the_stream_ends_the_wait_for_the_rate) {
    const auto outlet =
        makeOutlet(file, 1, std::make_unique<PY4mCoding>(PYuvConversion::Chroma::Quarter));
    offer(*outlet, 1, 1);
    EXPECT_TRUE(outlet->waitUntilFinished(longestFrameWait));
    finish(*outlet);
    EXPECT_TRUE(readFile(file).startsWith("YUV4MPEG2 W64 H48 F0:0 "));
}

TEST_F(FrameOutlet, a_slow_reader_loses_frames_which_are_counted_and_the_others_stay_whole) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    const auto outlet = makeOutlet(file);
    // Nobody reads: the pipe takes some, the queue its eight, and the rest is dropped.
    quint64 last = 0;
    while (outlet->progress().tally.dropped < 500) {
        ASSERT_LT(last, 100'000U);
        offer(*outlet, last + 1, last + 1);
        ++last;
    }
    const POutletTally tally = outlet->progress().tally;
    EXPECT_TRUE(tally.isBalanced());
    EXPECT_LE(tally.waiting, PFrameOutlet::mostWaiting + justWritten);
    QByteArray got;
    outlet->end();
    EXPECT_TRUE(waitUntil([&] {
        got += pipe.read(1 << 20);
        return outlet->waitUntilFinished(0ms) && got.size() == qsizetype(outlet->progress().bytes);
    }));
    const POutletTally atEnd = finish(*outlet).tally;
    EXPECT_EQ(atEnd.written, tally.taken());
    EXPECT_EQ(atEnd.dropped, tally.dropped);
    ASSERT_EQ(got.size(), qsizetype(atEnd.written) * frameBytes);
    for (quint64 i = 0; i < atEnd.written; ++i) {
        const QByteArray one = got.mid(qsizetype(i) * frameBytes, frameBytes);
        EXPECT_EQ(one, QByteArray(frameBytes, one[0])) << "frame " << i;
    }
}

TEST_F(FrameOutlet, holds_no_more_frames_than_the_memory_has_room_for) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    const auto outlet =
        makeOutlet(file, std::nullopt, std::make_unique<PRawCoding>(), 3 * frameBytes);
    const PDeviceFrame frame = makeFrame(1);
    quint64 most = 0;
    for (int i = 0; i < 5'000; ++i) {
        outlet->takeFrame(frame, Kind::Live);
        most = std::max(most, outlet->progress().tally.waiting);
    }
    EXPECT_LE(most, 3U + justWritten);
    EXPECT_TRUE(waitUntil([&] { // until the pipe is full too
        outlet->takeFrame(frame, Kind::Live);
        return outlet->progress().tally.waiting == 3;
    }));
    EXPECT_GT(outlet->progress().tally.dropped, 0U);
    pipe.closeReader();
    EXPECT_TRUE(outlet->waitUntilFinished(longestFrameWait));
    EXPECT_TRUE(outlet->progress().tally.isBalanced());
}

TEST_F(FrameOutlet, a_reader_that_closes_the_pipe_ends_it_without_an_error) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    const auto outlet = makeOutlet(file);
    offer(*outlet, 1, 1);
    EXPECT_TRUE(outlet->waitUntilFinished(longestFrameWait));
    EXPECT_FALSE(outlet->progress().isOver);
    pipe.closeReader();
    EXPECT_TRUE(outlet->progress().isOver); // without a frame
    offer(*outlet, 2, 3);
    const PFrameOutlet::Progress progress = finish(*outlet);
    EXPECT_TRUE(progress.isReaderGone);
    EXPECT_EQ(progress.error, QString());
    EXPECT_EQ(progress.tally.written, 1U);
    EXPECT_EQ(progress.tally.unwritten + progress.tally.afterEnd, 2U);
}

TEST_F(FrameOutlet, a_full_disk_is_an_error_that_names_the_frame) {
    const auto outlet = makeOutlet(u"/dev/full"_qs);
    offer(*outlet, 1, 1);
    EXPECT_TRUE(outlet->waitUntilFinished(longestFrameWait));
    offer(*outlet, 2, 2);
    const PFrameOutlet::Progress progress = finish(*outlet);
    EXPECT_TRUE(progress.isOver);
    EXPECT_EQ(progress.error, u"cannot write frame 1 to \"/dev/full\": No space left on device"_qs);
    EXPECT_EQ(progress.tally.unwritten, 1U);
    EXPECT_EQ(progress.tally.afterEnd, 1U);
}

TEST_F(FrameOutlet, a_frame_of_another_size_is_an_error) {
    const auto outlet = makeOutlet(file);
    offer(*outlet, 1, 2);
    outlet->takeFrame(makeFrame(3, 32), Kind::Live);
    const PFrameOutlet::Progress progress = finish(*outlet);
    EXPECT_EQ(progress.error,
              u"cannot write frame 3 to \"%1\": it has 32x48 pixels, and the first one 64x48: "
              "expected frames of one size and format"_qs.arg(file));
    EXPECT_EQ(readFile(file), makeBytes(1) + makeBytes(2));
}

TEST_F(FrameOutlet, a_reader_that_stops_cannot_keep_it_from_ending) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    const auto outlet = makeOutlet(file);
    block(*outlet);
    outlet->endWithin(1ms);
    const PFrameOutlet::Progress progress = finish(*outlet);
    EXPECT_EQ(progress.error, QString());
    EXPECT_FALSE(progress.isReaderGone);
    EXPECT_GT(progress.tally.unwritten, 0U);
    EXPECT_LE(progress.tally.unwritten, PFrameOutlet::mostWaiting + justWritten);
}

TEST_F(FrameOutlet, is_destroyed_although_its_reader_has_stopped) {
    TestPipe pipe(QFile::encodeName(file));
    pipe.openReader();
    auto outlet = makeOutlet(file);
    block(*outlet);
    outlet.reset();
    EXPECT_FALSE(pipe.read(frameBytes).isEmpty());
}

} // namespace
