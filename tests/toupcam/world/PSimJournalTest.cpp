// SPDX-License-Identifier: MIT
#include <support/SimJournal.h>
#include <toupcam/SimTestSupport.h>

namespace {

using SimJournalLines = SimTest;
using Lines = std::vector<std::string>;

void ignoreHotPlug(void*) {
}
TEST_F(SimJournalLines, session_is_written_call_by_call) {
    const HToupcam handle = Toupcam_Open("sim-20mc-1");
    char serial[32];
    Toupcam_get_SerialNumber(handle, serial);
    Toupcam_put_Option(handle, TOUPCAM_OPTION_FRAMERATE, 0);
    Toupcam_get_MaxSpeed(handle);
    Toupcam_put_Speed(handle, 3);
    int width = 0;
    int height = 0;
    Toupcam_get_Resolution(handle, 1, &width, &height);
    Toupcam_put_eSize(handle, 9);
    Toupcam_Close(handle);
    EXPECT_EQ(
        SimJournal::lines(),
        Lines({"Toupcam_Open(\"sim-20mc-1\") = h1",
               "Toupcam_get_SerialNumber(h1, \"SIM20C0001\") = 0",
               "Toupcam_put_Option(h1, 17, 0) = 0", "Toupcam_get_MaxSpeed(h1) = 3",
               "Toupcam_put_Speed(h1, 3) = 0", "Toupcam_get_Resolution(h1, 1, 2736, 1824) = 0",
               "Toupcam_put_eSize(h1, 9) = -2147024809", "Toupcam_Close(h1)"}));
}

TEST_F(SimJournalLines, settings_are_written_with_what_is_set_and_what_is_read) {
    const HToupcam handle = Toupcam_Open("sim-1mm-1");
    unsigned x = 1;
    unsigned y = 1;
    unsigned width = 1;
    unsigned height = 1;
    int value = 7;
    Toupcam_put_Roi(handle, 2, 4, 8, 12);
    Toupcam_get_Roi(handle, &x, &y, &width, &height);
    Toupcam_put_Contrast(handle, -20);
    Toupcam_get_Contrast(handle, &value);
    Toupcam_put_TempTint(handle, 5000, 1100);
    Toupcam_AwbOnePush(handle, nullptr, &value);
    Toupcam_Trigger(handle, 65535);
    Toupcam_put_Temperature(handle, -100);
    Toupcam_get_Temperature(handle, nullptr);
    Toupcam_Close(handle);
    EXPECT_EQ(SimJournal::lines(),
              Lines({"Toupcam_Open(\"sim-1mm-1\") = h1", "Toupcam_put_Roi(h1, 2, 4, 8, 12) = 0",
                     "Toupcam_get_Roi(h1, 2, 4, 8, 12) = 0", "Toupcam_put_Contrast(h1, -20) = 0",
                     "Toupcam_get_Contrast(h1, -20) = 0",
                     "Toupcam_put_TempTint(h1, 5000, 1100) = -2147467263",
                     "Toupcam_AwbOnePush(h1, null, ctx) = -2147467263",
                     "Toupcam_Trigger(h1, 65535) = -2147467263",
                     "Toupcam_put_Temperature(h1, -100) = -2147467263",
                     "Toupcam_get_Temperature(h1, null) = -2147467261", "Toupcam_Close(h1)"}));
}

TEST_F(SimJournalLines, callbacks_contexts_and_null_pointers_are_named) {
    int context = 0;
    Toupcam_HotPlug(ignoreHotPlug, &context);
    Toupcam_HotPlug(nullptr, nullptr);
    Toupcam_EnumV2(nullptr);
    Toupcam_StartPushMode(nullptr, ignoreData, nullptr);
    Toupcam_PullImageV2(nullptr, &context, 32, nullptr);
    Toupcam_get_ExpoTime(nullptr, nullptr);
    Toupcam_Open(nullptr);
    EXPECT_EQ(
        SimJournal::lines(),
        Lines({"Toupcam_HotPlug(fn, ctx)", "Toupcam_HotPlug(null, null)",
               "Toupcam_EnumV2(null) = 0", "Toupcam_StartPushMode(h0, fn, null) = -2147024809",
               "Toupcam_PullImageV2(h0, data, 32, null) = -2147024809",
               "Toupcam_get_ExpoTime(h0, null) = -2147024809", "Toupcam_Open(null) = h0"}));
}

TEST_F(SimJournalLines, handles_are_numbered_in_the_order_of_their_opening) {
    const HToupcam first = Toupcam_Open("sim-1mm-1");
    Toupcam_Close(first);
    const HToupcam second = Toupcam_Open("sim-1mm-1");
    Toupcam_Stop(first);
    Toupcam_Stop(second);
    Toupcam_Close(second);
    Toupcam_t made{};
    Toupcam_Stop(&made);
    EXPECT_EQ(SimJournal::lines(), Lines({"Toupcam_Open(\"sim-1mm-1\") = h1", "Toupcam_Close(h1)",
                                          "Toupcam_Open(\"sim-1mm-1\") = h2",
                                          "Toupcam_Stop(h1) = -2147024809", "Toupcam_Stop(h2) = 0",
                                          "Toupcam_Close(h2)", "Toupcam_Stop(h?) = -2147024809"}));
}

TEST_F(SimJournalLines, injected_results_are_written_like_others) {
    ToupcamSim_failCall("Toupcam_put_RealTime", 0, 1, -3);
    Toupcam_put_RealTime(nullptr, 1);
    EXPECT_EQ(SimJournal::lines(), Lines({"Toupcam_put_RealTime(h0, 1) = -3"}));
}

TEST_F(SimJournalLines, frame_information_is_written_as_pulled) {
    const HToupcam handle = openOnly(SimCameraText());
    EventLog events;
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    ASSERT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamSim_clearJournal();
    ToupcamFrameInfoV2 info{};
    ASSERT_EQ(Toupcam_PullImageV2(handle, nullptr, 32, &info), S_OK);
    EXPECT_EQ(SimJournal::lines().front(), "Toupcam_PullImageV2(h1, null, 32, {96x64 seq " +
                                               std::to_string(info.seq) + "}) = 0");
    Toupcam_Close(handle);
}

TEST_F(SimJournalLines, line_is_cut_to_the_buffer) {
    Toupcam_Open(nullptr);
    char line[8];
    EXPECT_EQ(ToupcamSim_journal(0, line, sizeof line), 1U);
    EXPECT_STREQ(line, "Toupcam");
    EXPECT_EQ(ToupcamSim_journal(5, line, sizeof line), 1U);
    EXPECT_STREQ(line, "");
}

TEST_F(SimJournalLines, cleared_journal_is_empty) {
    Toupcam_Open(nullptr);
    ToupcamSim_clearJournal();
    EXPECT_TRUE(SimJournal::lines().empty());
}

TEST_F(SimJournalLines, keeps_the_newest_100000_lines) {
    for (int i = 0; i < 100005; ++i)
        Toupcam_put_RealTime(nullptr, i);
    EXPECT_EQ(ToupcamSim_journal(0, nullptr, 0), 100000U);
    char line[64];
    ToupcamSim_journal(0, line, sizeof line);
    EXPECT_STREQ(line, "Toupcam_put_RealTime(h0, 5) = -2147024809");
    ToupcamSim_clearJournal();
}

TEST_F(SimJournalLines, line_breaks_in_an_id_do_not_break_the_line) {
    Toupcam_Open("a\nb");
    EXPECT_EQ(SimJournal::lines(), Lines({"Toupcam_Open(\"a\\x0ab\") = h0"}));
}

} // namespace
