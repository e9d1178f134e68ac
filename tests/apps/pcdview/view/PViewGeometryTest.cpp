// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewGeometry.h>

#include <gtest/gtest.h>

namespace {

class PViewGeometryTest : public testing::Test {
protected:
    PViewGeometryTest() {
        geometry.setPicture({4000, 3000});
        geometry.setViewport({800, 600});
    }

    void expectSame(QPointF a, QPointF b) {
        EXPECT_NEAR(a.x(), b.x(), 1e-6);
        EXPECT_NEAR(a.y(), b.y(), 1e-6);
    }

    PViewGeometry geometry;
};

} // namespace

TEST_F(PViewGeometryTest, fits_the_whole_picture_at_first) {
    EXPECT_DOUBLE_EQ(geometry.scale(), 0.2);
    EXPECT_EQ(geometry.pictureInView(), QRectF(0, 0, 800, 600));
}

TEST_F(PViewGeometryTest, centres_a_fitted_picture_of_another_shape) {
    geometry.setViewport({1000, 600});
    EXPECT_EQ(geometry.pictureInView(), QRectF(100, 0, 800, 600));
}

TEST_F(PViewGeometryTest, stays_fitted_when_the_view_changes) {
    geometry.setViewport({400, 300});
    EXPECT_DOUBLE_EQ(geometry.scale(), 0.1);
    geometry.setViewport({1600, 1200});
    EXPECT_DOUBLE_EQ(geometry.scale(), 0.4);
}

TEST_F(PViewGeometryTest, zooming_keeps_the_point_under_the_cursor) {
    const QPointF cursor(613, 222);
    for (double scale : {0.3, 1.0, 3.7, 12.5}) {
        const QPointF before = geometry.toPicture(cursor);
        geometry.zoomTo(scale, cursor);
        EXPECT_DOUBLE_EQ(geometry.scale(), scale);
        expectSame(geometry.toPicture(cursor), before);
    }
}

TEST_F(PViewGeometryTest, zooming_in_and_out_again_comes_back) {
    geometry.zoomTo(5, {100, 500});
    geometry.zoomTo(0.2, {100, 500});
    EXPECT_NEAR(geometry.pictureInView().width(), 800, 1e-9);
    expectSame(geometry.pictureInView().topLeft(), {0, 0});
}

TEST_F(PViewGeometryTest, the_scale_has_limits) {
    geometry.zoomTo(1000, {400, 300});
    EXPECT_DOUBLE_EQ(geometry.scale(), PViewGeometry::largestScale);
    geometry.zoomTo(0.0001, {400, 300});
    EXPECT_DOUBLE_EQ(geometry.scale(), 0.2);
}

TEST_F(PViewGeometryTest, a_picture_smaller_than_the_view_can_be_shown_at_its_own_size) {
    geometry.setPicture({400, 300});
    EXPECT_DOUBLE_EQ(geometry.scale(), 2);
    geometry.zoomTo(1, {0, 0});
    EXPECT_EQ(geometry.pictureInView(), QRectF(200, 150, 400, 300));
}

TEST_F(PViewGeometryTest, dragging_moves_the_picture_with_the_mouse) {
    geometry.zoomTo(1, {400, 300});
    const QPointF before = geometry.toPicture({400, 300});
    geometry.pan({-30, 12});
    expectSame(geometry.toPicture({370, 312}), before);
}

TEST_F(PViewGeometryTest, dragging_leaves_no_gap_at_any_edge) {
    geometry.zoomTo(1, {400, 300});
    geometry.pan({1e6, 1e6});
    expectSame(geometry.pictureInView().topLeft(), {0, 0});
    geometry.pan({-1e6, -1e6});
    expectSame(geometry.pictureInView().bottomRight(), {800, 600});
}

TEST_F(PViewGeometryTest, a_fitted_picture_cannot_be_dragged_away) {
    geometry.pan({100, -100});
    expectSame(geometry.pictureInView().topLeft(), {0, 0});
}

TEST_F(PViewGeometryTest, a_larger_view_keeps_the_middle_of_what_it_shows) {
    geometry.zoomTo(1, {400, 300});
    const QPointF middle = geometry.toPicture({400, 300});
    geometry.setViewport({1000, 900});
    expectSame(geometry.toPicture({500, 450}), middle);
    EXPECT_DOUBLE_EQ(geometry.scale(), 1);
}

TEST_F(PViewGeometryTest, a_mode_with_half_the_pixels_shows_the_same_field) {
    geometry.zoomTo(1, {100, 200});
    const QPointF middle = geometry.toPicture({400, 300});
    geometry.setPicture({2000, 1500});
    EXPECT_DOUBLE_EQ(geometry.scale(), 2);
    expectSame(geometry.toPicture({400, 300}), middle / 2);
}

TEST_F(PViewGeometryTest, fitting_again_undoes_zoom_and_place) {
    geometry.zoomTo(7, {10, 20});
    geometry.fit();
    EXPECT_EQ(geometry.pictureInView(), QRectF(0, 0, 800, 600));
}

TEST_F(PViewGeometryTest, without_a_picture_nothing_can_be_zoomed) {
    PViewGeometry empty;
    empty.setViewport({800, 600});
    empty.zoomTo(3, {1, 1});
    empty.pan({5, 5});
    EXPECT_DOUBLE_EQ(empty.scale(), 1);
    // It is still fitted: a picture is shown whole, also in a smaller view.
    empty.setPicture({1600, 1200});
    empty.setViewport({400, 300});
    EXPECT_EQ(empty.pictureInView(), QRectF(0, 0, 400, 300));
}
