// SPDX-License-Identifier: MIT
// What counts as growth, and that the soak notices it: the program itself runs a few turns with
// something leaked on purpose.
#include <reliability/GrowthWatch.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QProcess>

#include <gmock/gmock.h>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr qint64 mebibyte = qint64(1) << 20;

/// 100 samples, one each repetition, each made by `change` from its number.
QStringList judge(const std::function<void(qint64, ProcessState&)>& change,
                  GrowthWatch::Bounds bounds = {}) {
    GrowthWatch watch(bounds);
    for (qint64 i = 0; i < 100; ++i) {
        ProcessState state{5, 20, 10 * mebibyte, 50 * mebibyte};
        change(i, state);
        watch.add(i, state);
    }
    return watch.complaints();
}

} // namespace

TEST(GrowthWatch, nothing_grows) {
    EXPECT_THAT(judge([](qint64, ProcessState&) {}), IsEmpty());
}

TEST(GrowthWatch, memory_that_goes_up_and_down_does_not_grow) {
    EXPECT_THAT(judge([](qint64 i, ProcessState& state) {
                    state.heapBytes += i % 2 * 2 * mebibyte;
                    state.residentBytes += i % 7 * mebibyte;
                }),
                IsEmpty());
}

TEST(GrowthWatch, what_grows_during_the_warm_up_is_not_judged) {
    EXPECT_THAT(judge([](qint64 i, ProcessState& state) {
                    state.threads += i < 20 ? i : 20;
                    state.residentBytes += (i < 20 ? i : 20) * mebibyte;
                }),
                IsEmpty());
}

TEST(GrowthWatch, one_more_thread_and_one_more_descriptor_are_named_with_their_numbers) {
    const QStringList complaints = judge([](qint64 i, ProcessState& state) {
        state.threads += i < 50 ? 0 : 1;
        state.descriptors += i < 50 ? 0 : 2;
    });
    EXPECT_THAT(complaints,
                ElementsAre(u"threads: 5 after 20 repetitions, 6 after 99"_qs,
                            u"file descriptors: 20 after 20 repetitions, 22 after 99"_qs));
}

TEST(GrowthWatch, memory_that_grows_slowly_in_noise_is_named_with_its_growth) {
    const QStringList complaints = judge([](qint64 i, ProcessState& state) {
        state.heapBytes += i * 32 * 1024 + i % 2 * mebibyte;
        state.residentBytes += i * 256 * 1024;
    });
    EXPECT_THAT(
        complaints,
        ElementsAre(
            testing::Truly(
                [](const QString& text) { return text.startsWith(u"heap: grew by 25"_qs); }),
            u"resident memory: grew by 20224 KiB in 79 repetitions, expected at most 8192 KiB"_qs));
}

TEST(GrowthWatch, resident_memory_is_not_judged_where_it_says_nothing) {
    GrowthWatch::Bounds bounds;
    bounds.isResidentJudged = false;
    EXPECT_THAT(
        judge([](qint64 i, ProcessState& state) { state.residentBytes += i * mebibyte; }, bounds),
        IsEmpty());
}

TEST(GrowthWatch, a_few_samples_are_not_judged_and_this_is_a_failure) {
    GrowthWatch watch({});
    for (qint64 i = 0; i < 9; ++i)
        watch.add(i, {});
    EXPECT_THAT(watch.complaints(),
                ElementsAre(u"9 samples are too few to judge, expected at least 10"_qs));
}

namespace {

struct LeakRow {
    const char* name; ///< as the program knows it
    const char* said;
};

class Soak : public RowTest<LeakRow> {};

} // namespace

ROW_TEST(Soak, notices_what_is_leaked_on_purpose) {
    QProcess program;
    program.start(QStringLiteral(PCD_SOAK_PROGRAM),
                  {u"--leak"_qs, QString::fromLatin1(GetParam().name), u"--seconds"_qs, u"0"_qs,
                   u"--cycles"_qs, u"240"_qs});
    ASSERT_TRUE(program.waitForFinished(240'000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_THAT(program.readAllStandardOutput().toStdString(), HasSubstr(GetParam().said));
}

ROWS(Leaks, Soak, LeakRow{"memory", "FAILS: heap: grew by"},
     LeakRow{"descriptor", "FAILS: file descriptors: "}, LeakRow{"thread", "FAILS: threads: "},
     LeakRow{"frame", "frames were pushed, the ledger has"});
