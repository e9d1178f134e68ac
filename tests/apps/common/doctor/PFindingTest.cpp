// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PFinding.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

using Severity = PFinding::Severity;

const PFinding goodFinding{Severity::Ok, u"qt"_qs, u"Qt"_qs, u"version 6"_qs, {}};
const PFinding badFinding{Severity::Warning, u"disk"_qs, u"/data"_qs, u"slow"_qs,
                          u"Take another."_qs};

TEST(PFinding, the_worst_severity_of_none_is_ok) {
    EXPECT_EQ(PFinding::findWorst({}), Severity::Ok);
}

TEST(PFinding, the_worst_severity_counts_wherever_it_is) {
    PFinding error = badFinding;
    error.severity = Severity::Error;
    EXPECT_EQ(PFinding::findWorst({goodFinding, badFinding, goodFinding}), Severity::Warning);
    EXPECT_EQ(PFinding::findWorst({error, badFinding, goodFinding}), Severity::Error);
}

TEST(PFinding, as_text_has_its_fix_in_a_second_line) {
    EXPECT_EQ(goodFinding.toText(), u"ok       qt             Qt: version 6"_qs);
    EXPECT_EQ(badFinding.toText(), u"warning  disk           /data: slow\n"
                                   "                        Fix: Take another."_qs);
}

TEST(PFinding, a_text_with_percent_signs_stays_as_it_is) {
    const PFinding finding{Severity::Note, u"disk"_qs, u"/%1"_qs, u"%2 %3"_qs, u"%1"_qs};
    EXPECT_EQ(finding.toText(), u"note     disk           /%1: %2 %3\n"
                                "                        Fix: %1"_qs);
}

TEST(PFinding, as_json_has_a_fix_only_if_there_is_one) {
    EXPECT_EQ(goodFinding.toJson(), (QJsonObject{{u"severity"_qs, u"ok"_qs},
                                                 {u"topic"_qs, u"qt"_qs},
                                                 {u"examined"_qs, u"Qt"_qs},
                                                 {u"found"_qs, u"version 6"_qs}}));
    EXPECT_EQ(badFinding.toJson().value(u"fix"_qs).toString(), u"Take another."_qs);
}

} // namespace
