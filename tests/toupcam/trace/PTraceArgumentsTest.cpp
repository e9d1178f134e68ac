// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceArguments.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

void hotPlug(void*) {
}

TEST(PTraceArguments, numbers_and_texts_have_their_values_when_a_call_begins) {
    EXPECT_EQ(PTraceArguments::in("(h, nSpeed, iValue)", QJsonValue(u"h1"_qs),
                                  static_cast<unsigned short>(65535), -3),
              (QJsonObject{{u"h"_qs, u"h1"_qs}, {u"nSpeed"_qs, 65535}, {u"iValue"_qs, -3}}));
    EXPECT_EQ(PTraceArguments::in("(camId)", "cam"), (QJsonObject{{u"camId"_qs, u"cam"_qs}}));
}

TEST(PTraceArguments, callbacks_and_memory_are_only_there_or_null) {
    int number = 0;
    EXPECT_EQ(PTraceArguments::in("(a, b)", &hotPlug, static_cast<void*>(&number)),
              (QJsonObject{{u"a"_qs, u"function"_qs}, {u"b"_qs, u"address"_qs}}));
    EXPECT_EQ(PTraceArguments::in("(a, b)", PTOUPCAM_HOTPLUG(nullptr), static_cast<void*>(nullptr)),
              (QJsonObject{{u"a"_qs, QJsonValue::Null}, {u"b"_qs, QJsonValue::Null}}));
}

TEST(PTraceArguments, what_a_call_writes_through_is_in_its_end) {
    unsigned short number = 7;
    char memory[PTraceArguments::serialSize] = "S1";
    char* const text = memory;
    short* const none = nullptr;
    EXPECT_EQ(PTraceArguments::in("(h, a, b, c)", 0, &number, text, none),
              (QJsonObject{{u"h"_qs, 0}, {u"c"_qs, QJsonValue::Null}}));
    EXPECT_EQ(PTraceArguments::out("(h, a, b, c)", 0, &number, text, none),
              (QJsonObject{{u"a"_qs, 7}, {u"b"_qs, u"S1"_qs}}));
}

} // namespace
