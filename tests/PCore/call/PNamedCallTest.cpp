// SPDX-License-Identifier: MIT
#include <PCore/call/PNamedCall.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

/// The text of the call that this thread is in.
QString textOfCall() {
    PCallSlot& slot = PCallSlot::ofThread();
    return slot.mark() ? slot.text() : QString();
}

TEST(PNamedCall, arguments_are_written_as_numbers) {
    static constexpr PNamedCall<int(int, unsigned short, unsigned, long long)> named("Camera_set");
    const auto inProgress = named.begin(-5, 65535, 4'000'000'000U, -1);
    EXPECT_EQ(textOfCall(), u"Camera_set(-5, 65535, 4000000000, -1)"_qs);
}

TEST(PNamedCall, addresses_are_written_in_hexadecimal) {
    static constexpr PNamedCall<void(void*, const int*, void (*)())> named("Camera_start");
    const auto inProgress = named.begin(reinterpret_cast<void*>(0x5a0), nullptr, nullptr);
    EXPECT_EQ(textOfCall(), u"Camera_start(0x5a0, null, null)"_qs);
}

TEST(PNamedCall, a_call_without_arguments_has_empty_parentheses) {
    static constexpr PNamedCall<void()> named("Camera_init");
    const auto inProgress = named.begin();
    EXPECT_EQ(textOfCall(), u"Camera_init()"_qs);
}

TEST(PNamedCall, a_text_is_kept_although_the_caller_changes_it) {
    static constexpr PNamedCall<void*(const char*)> named("Camera_open");
    char id[] = "usb-1\x1b[2J";
    const auto inProgress = named.begin(id);
    id[0] = 'x';
    EXPECT_EQ(textOfCall(), u"Camera_open(\"usb-1\\x1b[2J\")"_qs);
}

TEST(PNamedCall, a_long_text_is_cut_and_none_is_empty) {
    static constexpr PNamedCall<void*(const char*)> named("Camera_open");
    {
        const QByteArray id(100, 'c');
        const auto inProgress = named.begin(id.constData());
        EXPECT_EQ(textOfCall(), u"Camera_open(\"%1\")"_qs.arg(QString(48, u'c')));
    }
    const auto inProgress = named.begin(nullptr);
    EXPECT_EQ(textOfCall(), u"Camera_open(\"\")"_qs);
}

TEST(PNamedCall, a_call_is_over_when_its_object_is_destroyed) {
    static constexpr PNamedCall<void()> named("Camera_init");
    { const auto inProgress = named.begin(); }
    EXPECT_EQ(textOfCall(), QString());
}

} // namespace
