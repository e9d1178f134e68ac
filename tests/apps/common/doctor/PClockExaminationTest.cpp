// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PClockExamination.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

using Severity = PFinding::Severity;

struct ClockRow {
    std::string name;
    PSystemClock clock;
    Severity source;
    Severity timeOfDay;
};

class ClockJudgement : public RowTest<ClockRow> {};

ROW_TEST(ClockJudgement, is_judged) {
    const QList<PFinding> findings = PClockExamination(GetParam().clock).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_EQ(findings.first().severity, GetParam().source) << findings.first().found.toStdString();
    EXPECT_EQ(findings.last().severity, GetParam().timeOfDay);
    for (const PFinding& finding : findings)
        EXPECT_EQ(finding.fix.isEmpty(), finding.severity != Severity::Warning);
}

ROWS(Rows, ClockJudgement,
     ClockRow{"a_good_source_that_is_synchronised", {u"tsc"_qs, true}, Severity::Ok, Severity::Ok},
     ClockRow{
         "the_source_of_a_virtual_machine", {u"kvm-clock"_qs, true}, Severity::Ok, Severity::Ok},
     ClockRow{"a_time_of_day_that_is_not_synchronised",
              {u"tsc"_qs, false},
              Severity::Ok,
              Severity::Warning},
     ClockRow{"a_slow_source", {u"hpet"_qs, true}, Severity::Warning, Severity::Ok},
     ClockRow{"another_slow_source", {u"acpi_pm"_qs, true}, Severity::Warning, Severity::Ok},
     ClockRow{"a_coarse_source", {u"refined-jiffies"_qs, true}, Severity::Warning, Severity::Ok},
     ClockRow{"nothing_that_is_known", {QString(), std::nullopt}, Severity::Note, Severity::Note});

TEST(PClockExamination, a_slow_source_is_named) {
    const QList<PFinding> findings = PClockExamination({u"hpet"_qs, true}).run();
    ASSERT_EQ(findings.size(), 2);
    EXPECT_TRUE(findings.first().found.startsWith(u"hpet, "_qs));
}

} // namespace
