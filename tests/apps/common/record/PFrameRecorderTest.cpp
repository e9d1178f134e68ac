// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameRecorder.h>

#include <apps/common/TestFrames.h>
#include <apps/common/hang/PFilesInProgress.h>

#include <support/QtPrinters.h>

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace {

using namespace std::chrono_literals;

const PRecordSchedule::Plan noEnd;

/// Translates texts to capitals until it is destroyed.
class ShoutingTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* text, const char*, int) const override {
        return QString::fromLatin1(text).toUpper();
    }
};

/// How a fake writer fails, and the calls that it received; outlives it.
struct FakeWriterState {
    std::mutex mutex;
    std::vector<quint64> written; ///< sequence numbers of the frames
    std::optional<PRecordEnd> end;
    quint64 failAt = 0;            ///< the frame with this number cannot be written
    QString failureAtEnd;          ///< finish() fails with this reason
    quint64 missing = 0;           ///< written frames that are not found at the end
    bool throws = false;           ///< failures are exceptions
    std::shared_future<void> gate; ///< if valid, writing waits for it
};

class FakeWriter : public PFrameWriter {
public:
    explicit FakeWriter(std::shared_ptr<FakeWriterState> state)
        : m_state(std::move(state)) {}

    int threads() const override { return 1; }
    PStatus write(const PDeviceFrame& frame, quint64 number) override {
        if (m_state->gate.valid())
            m_state->gate.wait();
        const std::lock_guard lock(m_state->mutex);
        if (number == m_state->failAt)
            return fail(u"no room left"_qs);
        m_state->written.push_back(frame.stamp->sequence);
        return PStatus::Ok;
    }
    PStatus finish(const PRecordEnd& end) override {
        const std::lock_guard lock(m_state->mutex);
        m_state->end = end;
        return m_state->failureAtEnd.isEmpty() ? PStatus() : fail(m_state->failureAtEnd);
    }
    quint64 missing() const override { return m_state->end ? m_state->missing : 0; }

private:
    PStatus fail(const QString& reason) const {
        if (m_state->throws)
            throw std::runtime_error(reason.toStdString());
        return PStatus::failure(reason);
    }

    std::shared_ptr<FakeWriterState> m_state;
};

class FrameRecorder : public testing::Test {
protected:
    const std::shared_ptr<FakeWriterState> state = std::make_shared<FakeWriterState>();
    const std::size_t frameBytes = testFrame(1, 0ms).image.dataSize();

    std::unique_ptr<PFrameRecorder>
    record(const PRecordSchedule::Plan& plan,
           std::size_t byteLimit = PWriteMemory::defaultLimit()) const {
        return std::make_unique<PFrameRecorder>(std::make_unique<FakeWriter>(state), plan,
                                                std::make_shared<PWorkBudget>(byteLimit));
    }
    /// Offers this many frames, 10 ms apart; true if each was taken or not needed.
    static bool offer(PFrameRecorder& recorder, quint64 frames, quint64 first = 1) {
        bool all = true;
        for (quint64 i = first; i < first + frames; ++i)
            all = recorder.takeFrame(testFrame(i, 10ms * (i - 1)), PFrameSink::Kind::Live) && all;
        return all;
    }
    /// Ends it and returns its final progress.
    static PFrameRecorder::Progress end(PFrameRecorder& recorder, const QString& failure = {}) {
        recorder.end(std::nullopt, failure);
        EXPECT_TRUE(recorder.waitUntilFinished(longestFrameWait));
        const PFrameRecorder::Progress progress = recorder.progress();
        EXPECT_TRUE(progress.tally.isBalanced());
        EXPECT_EQ(progress.tally.waiting, 0U);
        return progress;
    }
};

TEST_F(FrameRecorder, writes_every_frame_in_order_and_then_completes_the_files) {
    const auto recorder = record(noEnd);
    EXPECT_TRUE(offer(*recorder, 5));
    const auto progress = end(*recorder);
    EXPECT_EQ(state->written, std::vector<quint64>({1, 2, 3, 4, 5}));
    EXPECT_EQ(progress.tally.wanted, 5U);
    EXPECT_EQ(progress.tally.written, 5U);
    EXPECT_TRUE(progress.isFinished);
    EXPECT_EQ(progress.error, QString());
    ASSERT_TRUE(state->end);
    EXPECT_EQ(state->end->tally.written, 5U);
    EXPECT_EQ(state->end->failure, QString());
}

TEST_F(FrameRecorder, counts_the_frames_that_arrive_but_are_not_to_be_recorded) {
    const auto timeLapse = record({std::nullopt, 45ms, 20ms}); // of frames at 0, 10, 20 … ms
    EXPECT_TRUE(offer(*timeLapse, 8));
    const PRecordTally tally = end(*timeLapse).tally;
    EXPECT_EQ(tally.written, 3U);  // 0, 20 and 40 ms
    EXPECT_EQ(tally.notDue, 2U);   // 10 and 30 ms
    EXPECT_EQ(tally.afterEnd, 3U); // 50, 60 and 70 ms
    EXPECT_TRUE(offer(*timeLapse, 1, 9));
    EXPECT_EQ(timeLapse->progress().tally.afterEnd, 4U);
}

TEST_F(FrameRecorder, leaves_snapshots_alone) {
    const auto recorder = record(noEnd);
    EXPECT_TRUE(recorder->takeFrame(testFrame(1, 0ms), PFrameSink::Kind::Snapshot));
    EXPECT_EQ(end(*recorder).tally.wanted, 0U);
}

TEST_F(FrameRecorder, stops_by_itself_after_a_number_of_frames) {
    const auto recorder = record({3, std::nullopt, std::nullopt});
    EXPECT_TRUE(offer(*recorder, 2));
    EXPECT_FALSE(recorder->progress().isOver);
    EXPECT_TRUE(offer(*recorder, 5, 3));
    EXPECT_TRUE(recorder->progress().isOver);
    EXPECT_FALSE(recorder->progress().isFinished);
    EXPECT_EQ(end(*recorder).tally.written, 3U);
    EXPECT_EQ(state->written, std::vector<quint64>({1, 2, 3}));
}

TEST_F(FrameRecorder, stops_by_itself_after_a_time_also_if_no_more_frames_come) {
    const auto recorder = record({std::nullopt, 100ms, std::nullopt});
    offer(*recorder, 2);
    const auto first = testFrame(1, 0ms).stamp->arrived;
    EXPECT_FALSE(recorder->progress(first + 99ms).isOver);
    EXPECT_TRUE(recorder->progress(first + 100ms).isOver);
    EXPECT_DOUBLE_EQ(recorder->progress(first + 25ms).share.value_or(-1), 0.25);
    EXPECT_EQ(recorder->progress(first + 25ms).timeLeft, PRecordSchedule::Duration(75ms));
    offer(*recorder, 20, 3);
    EXPECT_EQ(end(*recorder).tally.written, 10U);
}

TEST_F(FrameRecorder, a_time_lapse_writes_one_frame_each_interval) {
    const auto recorder = record({3, std::nullopt, 50ms});
    offer(*recorder, 100);
    EXPECT_EQ(end(*recorder).tally.wanted, 3U);
    EXPECT_EQ(state->written, std::vector<quint64>({1, 6, 11}));
}

TEST_F(FrameRecorder, ended_early_it_writes_what_waits_and_counts_what_did_not_come) {
    const auto recorder = record({10, std::nullopt, std::nullopt});
    offer(*recorder, 4);
    const auto progress = end(*recorder, u"interrupted"_qs);
    EXPECT_TRUE(offer(*recorder, 1, 5)); // not needed any more
    EXPECT_EQ(progress.tally.wanted, 10U);
    EXPECT_EQ(progress.tally.written, 4U);
    EXPECT_EQ(progress.tally.notTaken, 6U);
    EXPECT_EQ(state->written.size(), 4U);
    EXPECT_EQ(state->end->failure, u"interrupted"_qs);
    EXPECT_EQ(progress.error, QString());
}

TEST_F(FrameRecorder, its_files_are_completed_by_another_thread_if_the_main_thread_hangs) {
    std::promise<void> gate;
    state->gate = gate.get_future().share();
    const auto recorder = record(noEnd);
    offer(*recorder, 3);
    std::thread other(PFilesInProgress::completeAll);
    gate.set_value();
    other.join();
    EXPECT_TRUE(recorder->progress().isFinished);
    EXPECT_EQ(state->written, std::vector<quint64>({1, 2, 3}));
    ASSERT_TRUE(state->end);
    EXPECT_TRUE(state->end->failure.contains(u"did not return"_qs))
        << state->end->failure.toStdString();
}

TEST_F(FrameRecorder, the_ledger_reaches_the_files) {
    const auto recorder = record(noEnd);
    PFrameLedger ledger;
    ledger.produced = 17;
    recorder->end(ledger, {});
    ASSERT_TRUE(recorder->waitUntilFinished(longestFrameWait));
    ASSERT_TRUE(state->end && state->end->ledger);
    EXPECT_EQ(state->end->ledger->produced, 17U);
}

TEST_F(FrameRecorder, only_the_first_end_counts) {
    const auto recorder = record(noEnd);
    end(*recorder, u"first"_qs);
    end(*recorder, u"second"_qs);
    EXPECT_EQ(state->end->failure, u"first"_qs);
}

TEST_F(FrameRecorder, its_destructor_writes_what_waits_and_completes_the_files) {
    {
        const auto recorder = record(noEnd);
        offer(*recorder, 20);
    }
    EXPECT_EQ(state->written.size(), 20U);
    EXPECT_TRUE(state->end);
}

TEST_F(FrameRecorder, a_frame_that_finds_no_room_ends_it_and_what_waits_is_still_written) {
    std::promise<void> gate;
    state->gate = gate.get_future().share();
    const auto recorder = record({10, std::nullopt, std::nullopt}, 3 * frameBytes);
    EXPECT_TRUE(offer(*recorder, 3));
    EXPECT_EQ(recorder->progress().tally.waiting, 3U);
    EXPECT_FALSE(offer(*recorder, 1, 4));
    EXPECT_TRUE(recorder->progress().isOver);
    EXPECT_TRUE(offer(*recorder, 1, 5)); // not needed any more
    EXPECT_TRUE(recorder->progress().tally.isBalanced());
    gate.set_value();
    const auto progress = end(*recorder, u"another reason"_qs);
    EXPECT_EQ(progress.tally.written, 3U);
    EXPECT_EQ(progress.tally.refused, 1U);
    EXPECT_EQ(progress.tally.notTaken, 6U);
    EXPECT_TRUE(progress.error.startsWith(u"the disk is slower than the camera"_qs));
    EXPECT_EQ(state->end->failure, progress.error);
}

TEST_F(FrameRecorder,
       the_user_reads_the_reason_in_their_language_and_the_files_have_it_in_english) {
    ShoutingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    std::promise<void> gate;
    state->gate = gate.get_future().share();
    const auto recorder = record(noEnd, frameBytes);
    EXPECT_FALSE(offer(*recorder, 2));
    gate.set_value();
    EXPECT_TRUE(end(*recorder).error.startsWith(u"THE DISK IS SLOWER THAN THE CAMERA"_qs));
    EXPECT_TRUE(state->end->failure.startsWith(u"the disk is slower than the camera"_qs));
}

TEST_F(FrameRecorder, taking_a_frame_does_not_wait_for_a_blocked_writer) {
    std::promise<void> gate;
    state->gate = gate.get_future().share();
    const auto recorder = record(noEnd);
    EXPECT_TRUE(offer(*recorder, 100)); // would otherwise never return
    recorder->end(std::nullopt, {});    // nor would this one
    EXPECT_FALSE(recorder->progress().isFinished);
    gate.set_value();
    EXPECT_EQ(end(*recorder).tally.written, 100U);
}

TEST_F(FrameRecorder, a_frame_that_cannot_be_written_ends_it_with_the_reason) {
    for (const bool throws : {false, true}) {
        state->failAt = 3;
        state->throws = throws;
        state->written.clear();
        std::promise<void> gate;
        state->gate = gate.get_future().share();
        const auto recorder = record({10, std::nullopt, std::nullopt});
        offer(*recorder, 5);
        gate.set_value();
        const auto progress = end(*recorder, u"interrupted"_qs);
        EXPECT_TRUE(progress.error.contains(u"no room left"_qs)) << progress.error.toStdString();
        EXPECT_EQ(state->end->failure, progress.error);
        EXPECT_EQ(state->written, std::vector<quint64>({1, 2}));
        EXPECT_EQ(progress.tally.written, 2U);
        EXPECT_EQ(progress.tally.failed, 3U);
        EXPECT_EQ(progress.tally.notTaken, 5U);
    }
}

TEST_F(FrameRecorder, files_that_cannot_be_completed_are_an_error) {
    for (const bool throws : {false, true}) {
        state->failureAtEnd = u"no room for the description"_qs;
        state->throws = throws;
        const auto recorder = record(noEnd);
        offer(*recorder, 2);
        const auto progress = end(*recorder);
        EXPECT_TRUE(progress.isFinished);
        EXPECT_EQ(progress.error, state->failureAtEnd);
    }
}

TEST_F(FrameRecorder, written_frames_that_are_not_found_at_the_end_have_failed) {
    state->failureAtEnd = u"something else changed the file"_qs;
    state->missing = 2;
    const auto recorder = record(noEnd);
    offer(*recorder, 5);
    const auto progress = end(*recorder);
    EXPECT_EQ(progress.tally.written, 3U);
    EXPECT_EQ(progress.tally.failed, 2U);
    EXPECT_EQ(progress.error, state->failureAtEnd);
}

TEST_F(FrameRecorder, ending_while_frames_come_forgets_none) {
    for (int run = 0; run < 50; ++run) {
        state->written.clear();
        const auto recorder = record(noEnd);
        std::thread camera([&] { offer(*recorder, 2000); });
        while (recorder->progress().tally.wanted == 0)
            std::this_thread::yield();
        recorder->end(std::nullopt, {});
        camera.join();
        const auto progress = end(*recorder);
        EXPECT_EQ(progress.tally.wanted, state->written.size());
        EXPECT_EQ(state->end->tally.written, state->written.size());
    }
}

} // namespace
