// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/camera/PMessageBar.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

class PMessageBarTest : public testing::Test {
protected:
    /// The message where there is room for this share of it.
    QString fitting(const QString& message, double share) {
        constexpr int margins = 12;
        bar.showMessage(message);
        bar.resize(int(share * bar.fontMetrics().horizontalAdvance(message)) + margins, 20);
        const QString text = bar.fittingMessage();
        EXPECT_LE(bar.fontMetrics().horizontalAdvance(text), bar.width());
        return text;
    }

    PMessageBar bar;
};

} // namespace

TEST_F(PMessageBarTest, shows_a_message_that_fits_as_it_is) {
    EXPECT_EQ(fitting(u"Saved /home/user/picture.png"_qs, 1.1), u"Saved /home/user/picture.png"_qs);
}

TEST_F(PMessageBarTest, shortens_the_path_and_keeps_what_happened_to_it) {
    const QString text = fitting(u"Small-S0001: Recorded 50 frames: /home/a user/Pictures/pcdview/"
                                 "Small-S0001_2026-11-22_09-11-51-536.ome.tif"_qs,
                                 0.7);
    EXPECT_TRUE(text.startsWith(u"Small-S0001: Recorded 50 frames: /"_qs)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(u".ome.tif"_qs)) << text.toStdString();
}

TEST_F(PMessageBarTest, keeps_the_words_on_both_sides_of_a_path) {
    const QString text =
        fitting(u"Small-S0001: The recording ended early after 12 frames: cannot "
                "save \"/home/user/Pictures/pcdview/Small-S0001_2026-11-22_09-11-51"
                "-536.ome.tif\": no room on the disk"_qs,
                0.7);
    EXPECT_TRUE(text.contains(u"ended early after 12 frames: cannot save \"/"_qs))
        << text.toStdString();
    EXPECT_TRUE(text.endsWith(u"\": no room on the disk"_qs)) << text.toStdString();
}

TEST_F(PMessageBarTest, finds_a_path_in_the_quotes_of_another_language) {
    const QString text = fitting(u"Small-S0001: не удалось сохранить «/home/user/Pictures/pcdview/"
                                 "Small-S0001_2026-11-22_09-11-51-536.ome.tif»: нет места"_qs,
                                 0.7);
    EXPECT_TRUE(text.startsWith(u"Small-S0001: не удалось сохранить «/"_qs)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(u"»: нет места"_qs)) << text.toStdString();
}

TEST_F(PMessageBarTest, keeps_the_beginning_where_there_is_little_room) {
    const QString text = fitting(u"Small-S0001: Recorded 50 frames: /home/user/Pictures/pcdview/"
                                 "Small-S0001_2026-11-22_09-11-51-536.ome.tif"_qs,
                                 0.35);
    EXPECT_TRUE(text.startsWith(u"Small-S0001: Recorded 50"_qs)) << text.toStdString();
}

TEST_F(PMessageBarTest, takes_no_unit_for_a_path) {
    const QString text = fitting(u"The disk writes 20 MB/s, and the camera sends 120 MB/s"_qs, 0.6);
    EXPECT_TRUE(text.startsWith(u"The disk writes 20 MB/s, and"_qs)) << text.toStdString();
}
