// SPDX-License-Identifier: MIT
#include <apps/common/system/PSystemClock.h>

#include <support/FolderTest.h>
#include <support/MadeSystem.h>
#include <support/QtPrinters.h>

namespace {

class PSystemClockTest : public FolderTest {
protected:
    MadeSystem made{path(QString())};
    const PSystemTree tree{path(QString())};
};

TEST_F(PSystemClockTest, has_a_source_and_is_synchronised) {
    const PSystemClock clock = PSystemClock::read(tree);
    EXPECT_EQ(clock.source, u"tsc"_qs);
    EXPECT_EQ(clock.isSynchronised, std::optional<bool>(true));
}

TEST_F(PSystemClockTest, is_not_synchronised_if_the_kernel_says_so) {
    made.write(u"clock-status"_qs, "65\n"); // STA_PLL and STA_UNSYNC
    EXPECT_EQ(PSystemClock::read(tree).isSynchronised, std::optional<bool>(false));
}

TEST_F(PSystemClockTest, is_unknown_where_the_system_reports_nothing) {
    const PSystemClock clock = PSystemClock::read(PSystemTree(path(u"nothing"_qs)));
    EXPECT_EQ(clock.source, QString());
    EXPECT_EQ(clock.isSynchronised, std::nullopt);
}

TEST_F(PSystemClockTest, the_kernel_of_this_system_answers) {
    EXPECT_TRUE(PSystemClock::read(PSystemTree()).isSynchronised.has_value());
}

} // namespace
