// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalyser.h>

#include <apps/pcdview/ViewPictures.h>

#include <support/WaitUntil.h>

#include <gtest/gtest.h>

namespace {

PImage even(int value, int size = 32) {
    return makePicture(size, size, PDIP::ColorFormat::Gray,
                       [=](int, int) { return QColor(value, value, value); });
}

class PFrameAnalyserTest : public testing::Test {
protected:
    PFrameAnalyserTest() {
        QObject::connect(&analyser, &PFrameAnalyser::analysed, &analyser,
                         [this](const PFrameAnalysis& analysis) {
                             means.push_back(analysis.mean(0));
                             thread = QThread::currentThread();
                         });
    }

    PFrameAnalyser analyser;
    std::vector<double> means;
    QThread* thread = nullptr;
};

} // namespace

TEST_F(PFrameAnalyserTest, reports_a_picture_on_the_thread_that_owns_it) {
    analyser.offer(even(42));
    ASSERT_TRUE(waitUntil([this] { return !means.empty(); }));
    EXPECT_EQ(means, std::vector<double>{42});
    EXPECT_EQ(thread, QThread::currentThread());
}

TEST_F(PFrameAnalyserTest, analyses_the_newest_of_many_pictures_and_leaves_some_out) {
    for (int value = 1; value <= 200; ++value)
        analyser.offer(even(value));
    ASSERT_TRUE(waitUntil([this] { return !means.empty() && means.back() == 200; }));
    EXPECT_LT(means.size(), 200u);
}

TEST_F(PFrameAnalyserTest, emits_nothing_about_pictures_that_are_to_be_forgotten) {
    analyser.offer(even(1, 500));
    analyser.forget();
    analyser.offer(even(2));
    ASSERT_TRUE(waitUntil([this] { return !means.empty(); }));
    EXPECT_EQ(means, std::vector<double>{2});
}

TEST_F(PFrameAnalyserTest, an_empty_picture_is_not_analysed) {
    analyser.offer(PImage());
    analyser.offer(even(7));
    ASSERT_TRUE(waitUntil([this] { return !means.empty(); }));
    EXPECT_EQ(means, std::vector<double>{7});
}
