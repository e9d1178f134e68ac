// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstLog.h>

#include <gstreamer/GstFixture.h>

#include <PLog/PLog.h>

namespace {

class PGstLogTest : public GstFixture {};

void keepMessage(GstDebugCategory* category, GstDebugLevel level, const gchar*, const gchar*, gint,
                 GObject*, GstDebugMessage* message, gpointer texts) {
    if (std::string(gst_debug_category_get_name(category)) == "pcd")
        static_cast<std::vector<std::string>*>(texts)->push_back(std::to_string(int(level)) + " " +
                                                                 gst_debug_message_get(message));
}

} // namespace

TEST_F(PGstLogTest, records_appear_in_gstreamer_s_log) {
    std::vector<std::string> texts;
    gst_debug_set_active(TRUE);
    // In brackets, because the macros of these names compare a function with an address of data.
    (gst_debug_add_log_function)(keepMessage, &texts, nullptr);
    PGstLog log;
    PLogRecord record;
    record.source = u"here"_qs;
    record.level = PLogLevel::Warning;
    record.items = {u"too late"_qs};
    gst_debug_set_threshold_from_string("pcd:4", TRUE);
    log.write(record);
    (gst_debug_remove_log_function)(keepMessage);
    gst_debug_set_threshold_from_string("", TRUE);
    EXPECT_EQ(texts,
              std::vector<std::string>{std::to_string(int(GST_LEVEL_WARNING)) + " here: too late"});
}
