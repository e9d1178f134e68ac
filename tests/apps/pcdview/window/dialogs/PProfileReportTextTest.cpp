// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/dialogs/PProfileReportText.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

TEST(PProfileReportTextTest, says_how_many_settings_were_applied_if_all_were) {
    PDeviceProfileReport report;
    report.applied = {"mode", "contrast"};
    EXPECT_EQ(PProfileReportText::html(report),
              u"<p>All settings of the profile applied: 2.</p>"_qs);
}

TEST(PProfileReportTextTest, lists_what_was_rejected_with_the_reason) {
    PDeviceProfileReport report;
    report.applied = {"mode"};
    report.refused = {{"contrast", u"out of range"_qs}};
    const QString html = PProfileReportText::html(report);
    EXPECT_TRUE(html.contains(u"Settings applied: 1, refused: 1."_qs)) << html.toStdString();
    EXPECT_TRUE(html.contains(u"<li><b>contrast</b>: out of range</li>"_qs)) << html.toStdString();
}

TEST(PProfileReportTextTest, lists_what_was_skipped_and_what_is_not_in_the_file) {
    PDeviceProfileReport report;
    report.ignored = {{"awb", u"an action"_qs}};
    report.missing = {"hue", "gamma"};
    const QString html = PProfileReportText::html(report);
    EXPECT_TRUE(html.contains(u"Skipped:"_qs)) << html.toStdString();
    EXPECT_TRUE(html.contains(u"<li><b>awb</b>: an action</li>"_qs)) << html.toStdString();
    EXPECT_TRUE(html.contains(u"hue, gamma"_qs)) << html.toStdString();
}

TEST(PProfileReportTextTest, shows_texts_of_the_file_as_they_are) {
    PDeviceProfileReport report;
    report.note = u"saved from <b>another</b> camera"_qs;
    report.refused = {{"<id>", u"a < b"_qs}};
    report.missing = {"<i>"};
    const QString html = PProfileReportText::html(report);
    for (const QString& text :
         {u"&lt;b&gt;another&lt;/b&gt;"_qs, u"<b>&lt;id&gt;</b>: a &lt; b"_qs, u"&lt;i&gt;</p>"_qs})
        EXPECT_TRUE(html.contains(text)) << text.toStdString();
}

TEST(PProfileReportTextTest, names_settings_by_their_titles) {
    PDeviceProfileReport report;
    report.refused = {{"contrast", u"out of range"_qs}};
    report.missing = {"hue"};
    const QString html = PProfileReportText::html(
        report, [](const QByteArray& id) { return u"<"_qs + QString::fromLatin1(id).toUpper(); });
    EXPECT_TRUE(html.contains(u"<b>&lt;CONTRAST</b>: out"_qs)) << html.toStdString();
    EXPECT_TRUE(html.contains(u"unchanged: &lt;HUE<"_qs)) << html.toStdString();
}
