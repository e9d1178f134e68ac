// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PHistogramPanel.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QLabel>
#include <QSettings>

namespace {

class PHistogramPanelTest : public FolderTest {
protected:
    PHistogramPanelTest() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(u"settings"_qs));
    }
    QString focusText(double focus) {
        PFrameAnalysis analysis;
        analysis.channels.resize(1);
        analysis.pixels = 1;
        analysis.focus = focus;
        PHistogramPanel panel;
        panel.setAnalysis(analysis);
        return panel.findChild<QLabel*>(u"focus"_qs)->text();
    }
};

} // namespace

TEST_F(PHistogramPanelTest, a_focus_score_keeps_its_digits_while_the_focus_is_turned) {
    EXPECT_EQ(focusText(0.10907), u"0.1091"_qs);
    EXPECT_EQ(focusText(0.10897), u"0.1090"_qs);
    EXPECT_EQ(focusText(2.39996), u"2.400"_qs);
}
