// SPDX-License-Identifier: MIT
#include <PCore/call/PCallSlot.h>

#include <PCore/call/PCallText.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

constexpr PCallRecord::Kind slotTestKind{
    "Camera_wait", [](const PCallRecord& call, PCallText& text) { text << call.word(0); }};

/// Makes a call that returns.
void makeCall(PCallSlot& slot, PCallRecord::Word argument) {
    slot.present().keep(0, argument);
    slot.present().begin(slotTestKind);
    slot.leave();
}

/// The calls that have returned, oldest first.
std::vector<std::string> callsBefore(const PCallSlot& slot) {
    std::vector<std::string> calls;
    for (const PCallRecord* call = slot.present().next(); call != &slot.present();
         call = call->next()) {
        PCallText text;
        if (call->write(text))
            calls.emplace_back(text.view());
    }
    return calls;
}

TEST(PCallSlot, threads_that_ended_give_their_slots_to_the_next_ones) {
    PCallSlot* first = nullptr;
    std::thread([&] { first = &PCallSlot::ofThread(); }).join();
    const std::size_t before = PCallSlot::all().size();
    for (int i = 0; i < 5; ++i) {
        PCallSlot* next = nullptr;
        std::thread([&] { next = &PCallSlot::ofThread(); }).join();
        EXPECT_EQ(next, first);
    }
    EXPECT_EQ(PCallSlot::all().size(), before);
}

TEST(PCallSlot, two_threads_have_two_slots) {
    const PCallSlot* const own = &PCallSlot::ofThread();
    const PCallSlot* other = nullptr;
    std::thread([&] { other = &PCallSlot::ofThread(); }).join();
    EXPECT_NE(other, own);
}

TEST(PCallSlot, a_thread_that_ends_in_a_call_leaves_it) {
    PCallSlot* slot = nullptr;
    std::thread([&] {
        slot = &PCallSlot::ofThread();
        slot->present().begin(slotTestKind);
    }).join();
    EXPECT_FALSE(slot->mark());
}

TEST(PCallSlot, a_mark_lasts_as_long_as_the_call) {
    PCallSlot slot;
    EXPECT_FALSE(slot.mark());
    slot.present().keep(0, 7);
    slot.present().begin(slotTestKind);
    EXPECT_FALSE(slot.isMarked());
    EXPECT_TRUE(slot.text().isEmpty());
    EXPECT_TRUE(slot.mark());
    EXPECT_TRUE(slot.isMarked());
    EXPECT_EQ(slot.text(), u"Camera_wait(7)"_qs);
    slot.leave();
    EXPECT_FALSE(slot.isMarked());
    slot.present().begin(slotTestKind);
    EXPECT_FALSE(slot.isMarked()) << "another call of the same function";
}

TEST(PCallSlot, the_calls_before_are_kept_in_their_order) {
    PCallSlot slot;
    EXPECT_TRUE(callsBefore(slot).empty());
    makeCall(slot, 1);
    makeCall(slot, 2);
    slot.present().keep(0, 3);
    slot.present().begin(slotTestKind);
    EXPECT_EQ(callsBefore(slot), (std::vector<std::string>{"Camera_wait(1)", "Camera_wait(2)"}));
}

TEST(PCallSlot, of_many_calls_the_newest_are_kept) {
    PCallSlot slot;
    for (PCallRecord::Word i = 1; i <= 100; ++i)
        makeCall(slot, i);
    const std::vector<std::string> calls = callsBefore(slot);
    ASSERT_EQ(calls.size(), PCallSlot::records - 1);
    EXPECT_EQ(calls.front(), "Camera_wait(70)");
    EXPECT_EQ(calls.back(), "Camera_wait(100)");
}

TEST(PCallSlot, a_call_whose_predecessor_in_the_ring_was_marked_is_not_marked) {
    PCallSlot slot;
    slot.present().begin(slotTestKind);
    EXPECT_TRUE(slot.mark());
    slot.leave();
    for (std::size_t i = 1; i < PCallSlot::records; ++i)
        makeCall(slot, i);
    EXPECT_FALSE(slot.isMarked());
    slot.present().begin(slotTestKind);
    EXPECT_FALSE(slot.isMarked());
}

TEST(PCallSlot, a_slot_names_its_thread_until_it_ends_and_forgets_its_calls_for_the_next) {
    PCallSlot* slot = nullptr;
    std::thread([&] {
        slot = &PCallSlot::ofThread();
        EXPECT_EQ(slot->thread(), ::gettid());
        makeCall(*slot, 1);
    }).join();
    EXPECT_EQ(slot->thread(), 0);
    EXPECT_EQ(callsBefore(*slot), std::vector<std::string>{"Camera_wait(1)"});
    std::thread([&] {
        ASSERT_EQ(&PCallSlot::ofThread(), slot);
        EXPECT_TRUE(callsBefore(*slot).empty());
    }).join();
}

TEST(PCallSlot, every_slot_is_in_both_lists) {
    PCallSlot::ofThread();
    std::vector<PCallSlot*> all = PCallSlot::all();
    std::reverse(all.begin(), all.end());
    const PCallSlot* slot = PCallSlot::newest();
    for (const PCallSlot* const expected : all) {
        ASSERT_EQ(slot, expected);
        slot = slot->older();
    }
    EXPECT_EQ(slot, nullptr);
}

} // namespace
