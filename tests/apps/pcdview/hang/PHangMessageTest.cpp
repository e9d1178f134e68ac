// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangMessage.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(PHangMessage, what_is_written_is_read_again) {
    const QString text = u"Camera_setName(0x55a0, \"zwölf µm\")"_qs;
    const auto call = PHangMessage::read(PHangMessage::write({text, 1500ms, false}));
    ASSERT_TRUE(call);
    EXPECT_EQ(call->text, text);
    EXPECT_EQ(call->time, 1500ms);
}

TEST(PHangMessage, a_text_that_is_too_long_is_cut) {
    const QByteArray message = PHangMessage::write({QString(10'000, u'a'), 1500ms, false});
    EXPECT_EQ(message.size(), PHangMessage::mostBytes);
    const auto call = PHangMessage::read(message);
    ASSERT_TRUE(call);
    EXPECT_TRUE(call->text.startsWith(u"aaaa"_qs));
    EXPECT_EQ(call->time, 1500ms);
}

TEST(PHangMessage, a_damaged_message_is_none) {
    for (const char* message : {"", " ", "12", "Camera_open()", "-1 Camera_open()", "1s Camera()"})
        EXPECT_FALSE(PHangMessage::read(message)) << '"' << message << '"';
}
