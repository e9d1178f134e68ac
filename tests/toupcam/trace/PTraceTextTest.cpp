// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceText.h>

#include <support/QtPrinters.h>

#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

TEST(PTraceText, text_in_utf8_is_written_as_it_is) {
    EXPECT_EQ(PTraceText::fromText("Kamera ß \n", 64), QJsonValue(u"Kamera ß \n"_qs));
}

TEST(PTraceText, a_text_without_an_end_stops_at_the_end_of_its_memory) {
    const char text[]{'a', 'b', 'c', 'd'};
    EXPECT_EQ(PTraceText::fromText(text, 3), QJsonValue(u"abc"_qs));
}

TEST(PTraceText, bytes_that_are_not_utf8_come_back_as_they_were) {
    const QByteArray bytes = "a\xff\x01";
    const QJsonValue written = PTraceText::fromText(bytes.constData(), 64);
    EXPECT_EQ(written, QJsonValue(QJsonObject{{u"hex"_qs, u"61ff01"_qs}}));
    EXPECT_EQ(PTraceText::toText(written), bytes);
}

TEST(PTraceText, a_null_pointer_is_null) {
    EXPECT_EQ(PTraceText::fromText(nullptr, 64), QJsonValue(QJsonValue::Null));
}

TEST(PTraceText, what_is_no_text_is_refused) {
    EXPECT_FALSE(PTraceText::toText(QJsonValue(3)));
    EXPECT_FALSE(PTraceText::toText(QJsonObject{{u"hex"_qs, u"6"_qs}}));
    EXPECT_FALSE(PTraceText::toText(QJsonObject{{u"hex"_qs, u"zz"_qs}}));
    EXPECT_FALSE(PTraceText::toText(QJsonObject()));
}

TEST(PTraceText, results_are_eight_hexadecimal_digits) {
    EXPECT_EQ(PTraceText::fromResult(E_FAIL), QJsonValue(u"0x80004005"_qs));
    EXPECT_EQ(PTraceText::fromResult(3), QJsonValue(u"0x00000003"_qs));
    EXPECT_EQ(PTraceText::toResult(u"0x80004005"_qs), E_FAIL);
}

TEST(PTraceText, results_in_any_other_form_are_refused) {
    for (const QString& text : {u"0x0"_qs, u"80004005"_qs, u"0x8000400g"_qs, u"0x-0000001"_qs,
                                u"0X00000001"_qs, u"0x100000000"_qs, QString()})
        EXPECT_FALSE(PTraceText::toResult(text)) << text.toStdString();
}

TEST(PTraceText, handles_have_names) {
    EXPECT_EQ(PTraceText::fromHandle(2), QJsonValue(u"h2"_qs));
    EXPECT_EQ(PTraceText::fromHandle(0), QJsonValue(QJsonValue::Null));
    EXPECT_EQ(PTraceText::toHandle(u"h2"_qs), 2);
    EXPECT_EQ(PTraceText::toHandle(QJsonValue::Null), 0);
}

TEST(PTraceText, other_names_of_handles_are_refused) {
    for (const QString& name : {u"h0"_qs, u"h-1"_qs, u"g1"_qs, u"h01"_qs, u"h99999999999"_qs})
        EXPECT_FALSE(PTraceText::toHandle(name)) << name.toStdString();
    EXPECT_FALSE(PTraceText::toHandle(1));
}

} // namespace
