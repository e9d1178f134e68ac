// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PRefusal.h>

#include <PCd/property/value/StreamedPair.h>

#include <PCore/PMinMaxRange.h>
#include <support/RowTest.h>

#include <QRect>
#include <QUuid>

#include <gtest/gtest.h>

namespace {

QVariant makePair(int saved, int leftOut) {
    return QVariant::fromValue(StreamedPair{saved, leftOut});
}

struct NumberRow {
    const char* name;
    int before;
    int requested;
    int now;
    int step;
    bool isRefusal;
};

class PRefusalNumberTest : public RowTest<NumberRow> {};

} // namespace

ROW_TEST(PRefusalNumberTest, is_distinguished_from_rounding) {
    const NumberRow& row = GetParam();
    const auto range = QVariant::fromValue(PMinMaxRange<int>{-1'000'000, 1'000'000, row.step});
    EXPECT_EQ(PRefusal::isOne(row.before, row.requested, row.now, range), row.isRefusal);
}

ROWS(Rows, PRefusalNumberTest, NumberRow{"one_that_stays", 0, 777, 0, 1, true},
     NumberRow{"one_that_stays_by_a_step", 0, 1, 0, 1, true},
     NumberRow{"one_below_zero_that_stays", -50, -40, -50, 1, true},
     NumberRow{"one_that_stays_nearly", 5000, 20'000, 5004, 1, true},
     NumberRow{"one_that_was_taken", 0, 777, 777, 1, false},
     NumberRow{"one_rounded_to_another_number", 5000, 20'000, 19'990, 1, false},
     NumberRow{"one_cut_to_another_number", 5000, 20'000, 15'000, 1, false},
     NumberRow{"one_rounded_back_within_a_step", 100, 103, 100, 5, false},
     NumberRow{"one_rounded_back_by_a_hundredth", 5000, 5050, 5000, 1, false},
     NumberRow{"one_rounded_back_by_a_hundredth_below", -5050, -5000, -5050, 1, false},
     NumberRow{"one_back_by_more_than_a_hundredth", 5000, 5051, 5000, 1, true},
     NumberRow{"one_back_by_a_whole_step", 100, 105, 100, 5, true});

TEST(PRefusalTest, a_number_without_a_range_is_judged_by_the_hundredth) {
    EXPECT_TRUE(PRefusal::isOne(100, 102, 100, QVariant()));
    EXPECT_FALSE(PRefusal::isOne(100, 101, 100, QVariant()));
}

TEST(PRefusalTest, anything_else_is_refused_if_it_stays) {
    EXPECT_TRUE(PRefusal::isOne(false, true, false, QVariant()));
    EXPECT_FALSE(PRefusal::isOne(false, true, true, QVariant()));
    const QUuid first(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const QUuid second(2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(PRefusal::isOne(first, second, first, QVariant()));
    EXPECT_FALSE(PRefusal::isOne(first, second, QUuid(), QVariant()));
    const QRect whole(0, 0, 1920, 1080);
    EXPECT_TRUE(PRefusal::isOne(whole, QRect(0, 0, 640, 480), whole, QVariant()));
    EXPECT_FALSE(PRefusal::isOne(whole, QRect(0, 0, 641, 481), QRect(0, 0, 640, 480), QVariant()));
}

TEST(PRefusalTest, a_composite_is_refused_if_its_saved_fields_stay) {
    EXPECT_TRUE(PRefusal::isOne(makePair(1, 5), makePair(2, 5), makePair(1, 6), QVariant()));
    EXPECT_FALSE(PRefusal::isOne(makePair(1, 5), makePair(2, 5), makePair(2, 6), QVariant()));
    EXPECT_FALSE(PRefusal::isOne(makePair(1, 5), makePair(2, 5), makePair(3, 5), QVariant()));
}
