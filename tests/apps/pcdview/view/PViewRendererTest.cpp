// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewRenderer.h>

#include <apps/pcdview/ViewPictures.h>
#include <apps/pcdview/view/PViewSampler.h>

#include <PDip/PBufferPool.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <gtest/gtest.h>

namespace {

PViewRenderer::Task makeTask(int value, int size = 32) {
    PViewGeometry geometry;
    geometry.setPicture({size, size});
    geometry.setViewport({40, 30});
    return {makePicture(size, size, PDIP::ColorFormat::Gray,
                        [=](int, int) { return QColor(value, value, value); }),
            geometry,
            {},
            Qt::blue};
}

/// Loses the results that are posted to this thread.
class DeliveryLoss : public QObject {
public:
    DeliveryLoss() { QCoreApplication::instance()->installEventFilter(this); }
    void end() { QCoreApplication::instance()->removeEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        const bool isResult = event->type() == QEvent::User;
        lost += isResult ? 1 : 0;
        return isResult;
    }

    int lost = 0;
};

class PViewRendererTest : public testing::Test {
protected:
    PViewRendererTest() {
        QObject::connect(&renderer, &PViewRenderer::rendered, &renderer,
                         [this](const QImage& canvas, bool newest) {
                             canvases.push_back(canvas);
                             isNewest = newest;
                             thread = QThread::currentThread();
                         });
    }

    int lastValue() const { return canvases.empty() ? -1 : qRed(canvases.back().pixel(20, 15)); }

    PViewRenderer renderer;
    std::vector<QImage> canvases;
    bool isNewest = false;
    QThread* thread = nullptr;
};

} // namespace

TEST_F(PViewRendererTest, emits_what_the_sampler_draws_on_the_thread_that_owns_it) {
    const PViewRenderer::Task task = makeTask(42);
    renderer.offer(task);
    EXPECT_TRUE(canvases.empty());
    ASSERT_TRUE(waitUntil([this] { return !canvases.empty(); }));
    EXPECT_EQ(canvases.back(),
              PViewSampler::render(task.image, task.geometry, task.style, task.around));
    EXPECT_EQ(canvases.size(), 1u);
    EXPECT_TRUE(isNewest);
    EXPECT_EQ(thread, QThread::currentThread());
}

TEST_F(PViewRendererTest, renders_the_newest_of_many_pictures_and_leaves_some_out) {
    for (int value = 1; value <= 200; ++value)
        renderer.offer(makeTask(value));
    ASSERT_TRUE(waitUntil([this] { return lastValue() == 200; }));
    EXPECT_LT(canvases.size(), 200u);
    EXPECT_TRUE(isNewest);
}

TEST_F(PViewRendererTest, emits_nothing_about_pictures_that_are_to_be_forgotten) {
    renderer.offer(makeTask(1, 500));
    renderer.offer(makeTask(2));
    renderer.forget();
    renderer.offer(makeTask(3));
    ASSERT_TRUE(waitUntil([this] { return !canvases.empty(); }));
    EXPECT_EQ(lastValue(), 3);
    EXPECT_EQ(canvases.size(), 1u);
}

TEST_F(PViewRendererTest, does_not_render_what_waited_when_it_was_to_forget_it) {
    const auto usedBytes = [] { return PBufferPool::instance().statistics().usedBytes; };
    const std::size_t before = usedBytes();
    renderer.offer(makeTask(1, 500));
    renderer.offer(makeTask(2));
    renderer.forget();
    ASSERT_TRUE(waitUntil([&] { return usedBytes() == before; }));
    renderer.offer(makeTask(3));
    ASSERT_TRUE(waitUntil([this] { return lastValue() == 3; }));
    EXPECT_EQ(canvases.size(), 1u);
}

TEST_F(PViewRendererTest, says_of_a_result_that_another_picture_was_offered_meanwhile) {
    std::vector<bool> newest;
    QObject::connect(&renderer, &PViewRenderer::rendered, &renderer,
                     [&](const QImage&, bool is) { newest.push_back(is); });
    renderer.offer(makeTask(1));
    renderer.offer(makeTask(2));
    ASSERT_TRUE(waitUntil([&] { return newest.size() == 2; }));
    EXPECT_EQ(newest, (std::vector<bool>{false, true}));
}

TEST_F(PViewRendererTest, goes_on_with_the_next_picture_if_a_result_is_not_delivered) {
    DeliveryLoss loss;
    renderer.offer(makeTask(1));
    ASSERT_TRUE(waitUntil([&loss] { return loss.lost > 0; }));
    EXPECT_TRUE(canvases.empty());
    loss.end();
    renderer.offer(makeTask(2));
    renderer.offer(makeTask(3));
    ASSERT_TRUE(waitUntil([this] { return lastValue() == 3; }));
}

TEST_F(PViewRendererTest, renders_into_the_memory_of_a_canvas_that_is_given_back) {
    renderer.offer(makeTask(1));
    ASSERT_TRUE(waitUntil([this] { return !canvases.empty(); }));
    const uchar* const memory = canvases.back().constBits();
    renderer.reuse(std::exchange(canvases.back(), QImage()));
    renderer.offer(makeTask(2));
    ASSERT_TRUE(waitUntil([this] { return canvases.size() == 2; }));
    EXPECT_EQ(canvases.back().constBits(), memory);
}
