// SPDX-License-Identifier: MIT
#include <apps/common/program/PManualPage.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

/// What a call adds to a page.
template <typename Call>
QString added(Call call) {
    PManualPage page(u"tool"_qs, u"Does this."_qs);
    const qsizetype before = page.text().size();
    call(page);
    return page.text().mid(before);
}

TEST(PManualPageTest, begins_with_the_name_and_the_purpose_as_whatis_expects_them) {
    const QString text = PManualPage(u"my-tool"_qs, u"Does this."_qs).text();
    EXPECT_TRUE(text.startsWith(u".TH MY-TOOL 1 "_qs)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(u".SH NAME\nmy\\-tool \\- does this\n"_qs)) << text.toStdString();
}

TEST(PManualPageTest, has_an_option_with_all_its_names_and_its_value) {
    const QCommandLineOption option({u"n"_qs, u"frames"_qs}, u"End then."_qs, u"FRAMES"_qs);
    EXPECT_EQ(added([&](PManualPage& page) { page.addOption(option, u"(stream)"_qs); }),
              u".TP\n\\fB\\-n\\fR, \\fB\\-\\-frames\\fR \\fIFRAMES\\fR\nEnd then. (stream)\n"_qs);
}

TEST(PManualPageTest, has_an_option_without_a_value) {
    const QCommandLineOption option(u"json"_qs, u"Print JSON."_qs);
    EXPECT_EQ(added([&](PManualPage& page) { page.addOption(option); }),
              u".TP\n\\fB\\-\\-json\\fR\nPrint JSON.\n"_qs);
}

TEST(PManualPageTest, keeps_text_from_being_a_command_or_an_escape) {
    EXPECT_EQ(added([](PManualPage& page) { page.addParagraph(u".so a\\b"_qs); }),
              u".PP\n\\&.so a\\eb\n"_qs);
    EXPECT_EQ(added([](PManualPage& page) { page.addLines(u"a -b\n'c"_qs); }),
              u".PP\n.EX\na \\-b\n\\&'c\n.EE\n"_qs);
}

TEST(PManualPageTest, refers_to_other_pages) {
    EXPECT_EQ(added([](PManualPage& page) {
                  page.addSeeAlso({u"a(1)"_qs, u"b(5)"_qs});
              }),
              u".SH SEE ALSO\n\\fBa\\fR(1),\n\\fBb\\fR(5)\n"_qs);
}

} // namespace
