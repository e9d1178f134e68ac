// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PDoctorReport.h>

#include <support/QtPrinters.h>

#include <QJsonArray>
#include <QLibraryInfo>

#include <gtest/gtest.h>

namespace {

using Severity = PFinding::Severity;

const PFinding slowDisk{Severity::Warning, u"disk"_qs, u"/home/an/out"_qs, u"slow"_qs,
                        u"Another."_qs};
const PFinding fineQt{Severity::Ok, u"qt"_qs, u"Qt"_qs, u"fine"_qs, {}};

TEST(PDoctorReport, as_text_has_versions_and_all_findings_without_names) {
    const QString text = PDoctorReport({slowDisk, fineQt})
                             .toText(PReportPrivacy(u"/home/an"_qs, u"an"_qs, u"lab7"_qs));
    const QStringList lines = text.split(u'\n');
    ASSERT_EQ(lines.size(), 8) << text.toStdString();
    EXPECT_TRUE(lines.at(0).startsWith(u"Program:  "_qs));
    EXPECT_EQ(lines.at(1), u"Qt:       "_qs + QLibraryInfo::version().toString());
    EXPECT_TRUE(lines.at(2).startsWith(u"System:   "_qs));
    EXPECT_EQ(lines.at(3), QString());
    EXPECT_EQ(lines.at(4), u"warning  disk           ~/out: slow"_qs);
    EXPECT_EQ(lines.at(5).trimmed(), u"Fix: Another."_qs);
    EXPECT_EQ(lines.at(6), u"ok       qt             Qt: fine"_qs);
    EXPECT_EQ(lines.at(7), QString());
}

TEST(PDoctorReport, as_json_has_the_worst_severity_and_all_findings) {
    const QJsonObject object = PDoctorReport({slowDisk, fineQt}).toJson();
    EXPECT_EQ(object.keys(),
              (QStringList{u"findings"_qs, u"program"_qs, u"qt"_qs, u"system"_qs, u"worst"_qs}));
    EXPECT_EQ(object.value(u"worst"_qs), QJsonValue(u"warning"_qs));
    EXPECT_EQ(object.value(u"findings"_qs).toArray(),
              (QJsonArray{slowDisk.toJson(), fineQt.toJson()}));
}

} // namespace
