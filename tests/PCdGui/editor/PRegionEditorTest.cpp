// SPDX-License-Identifier: MIT
#include <PCdGui/editor/EditorBench.h>

#include <support/QtPrinters.h>

#include <QPushButton>

namespace {

class PRegionEditorTest : public EditorBench<FakeRegion> {
protected:
    using Sets = QList<QRect>;

    PRegionEditorTest()
        : EditorBench("roi") {}

    PNumberField* field(const char* name) const {
        const QString expected = u"ROI: "_qs + QString::fromLatin1(name);
        for (PNumberField* candidate : editor->findChildren<PNumberField*>()) {
            if (candidate->accessibleName() == expected)
                return candidate;
        }
        return nullptr;
    }

    void enterInto(const char* name, int number) {
        enter(field(name), QString::number(number));
        turn();
    }

    QRect shown() const {
        return QRect(int(field("X")->value()), int(field("Y")->value()),
                     int(field("Width")->value()), int(field("Height")->value()));
    }
};

const QRect whole(0, 0, 1920, 1080);

} // namespace

TEST_F(PRegionEditorTest, shows_what_the_property_has) {
    open();
    EXPECT_EQ(shown(), whole);
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PRegionEditorTest, sets_once_per_edit) {
    open();
    enterInto("Width", 640);
    EXPECT_EQ(property->sets, Sets({QRect(0, 0, 640, 1080)}));
    enterInto("Height", 480);
    EXPECT_EQ(property->sets.size(), 2);
    EXPECT_EQ(property->valueInner(), QVariant(QRect(0, 0, 640, 480)));
}

TEST_F(PRegionEditorTest, takes_the_numbers_in_any_order) {
    open();
    enterInto("X", 100);
    enterInto("Y", 200);
    enterInto("Width", 640);
    enterInto("Height", 480);
    EXPECT_EQ(property->inDevice, QRect(100, 200, 640, 480));
    EXPECT_EQ(property->sets.size(), 4);
    for (const QRect& set : property->sets)
        EXPECT_TRUE(whole.contains(set));
}

TEST_F(PRegionEditorTest, makes_the_region_smaller_where_a_corner_leaves_too_little_room) {
    open();
    enterInto("X", 1000);
    EXPECT_EQ(property->inDevice, QRect(1000, 0, 920, 1080));
    EXPECT_EQ(shown(), property->inDevice);
}

TEST_F(PRegionEditorTest, rounds_sizes_to_the_steps_and_the_minimum) {
    open();
    enterInto("Width", 641);
    enterInto("Height", 1);
    EXPECT_EQ(property->sets, Sets({QRect(0, 0, 640, 1080), QRect(0, 0, 640, 4)}));
}

TEST_F(PRegionEditorTest, moves_by_steps_with_the_arrow_keys) {
    open();
    field("Width")->setFocus();
    QTest::keyClick(field("Width"), Qt::Key_Down);
    turn();
    EXPECT_EQ(property->sets, Sets({QRect(0, 0, 1916, 1080)}));
}

TEST_F(PRegionEditorTest, takes_the_whole_sensor_by_the_button) {
    property->inDevice = QRect(100, 200, 640, 480);
    property->updateValueFromDevice();
    open();
    part<QPushButton>()->click();
    turn();
    EXPECT_EQ(property->sets, Sets({whole}));
    EXPECT_EQ(shown(), whole);
    part<QPushButton>()->click();
    turn();
    EXPECT_EQ(property->sets.size(), 1) << "it is whole already";
}

using PRegionEditorRefusal = RefusingBench<PRegionEditorTest>;

ROW_TEST(PRegionEditorRefusal, shows_what_the_device_has) {
    enterInto("Width", 640);
    EXPECT_EQ(property->sets.size(), 1);
    EXPECT_EQ(property->valueInner(), QVariant(whole));
    EXPECT_EQ(shown(), whole);
}

ROW_TEST(PRegionEditorRefusal, is_reported_with_the_value_that_the_device_kept) {
    const QSignalSpy refused(editor, &PPropertyEditor::refused);
    enterInto("Width", 640);
    turn();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_EQ(refused[0], QVariantList({u"ROI"_qs, u"0,0,1920,1080"_qs}));
}

ROWS_IN(Rows, PRegionEditorRefusal, everyAnswer);

TEST_F(PRegionEditorTest, shows_a_region_off_the_steps_as_it_is) {
    open();
    deviceBecomes(QRect(3, 5, 641, 483));
    EXPECT_EQ(shown(), QRect(3, 5, 641, 483));
    turn();
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PRegionEditorTest, follows_the_range) {
    open();
    property->rangeInDevice.bounds = QRect(0, 0, 640, 480);
    deviceBecomes(QRect(0, 0, 640, 480));
    enterInto("Width", 1000);
    EXPECT_EQ(shown(), QRect(0, 0, 640, 480));
    EXPECT_TRUE(property->sets.isEmpty());
}

TEST_F(PRegionEditorTest, is_disabled_if_the_device_cannot_report_its_bounds) {
    property->rangeInDevice = PScanAreaRange();
    property->updateValueFromDevice();
    open();
    EXPECT_FALSE(field("X")->isEnabled());
    EXPECT_FALSE(part<QPushButton>()->isEnabled());
}

TEST_F(PRegionEditorTest, can_be_walked_through_with_tab) {
    open();
    editor->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), field("X"));
    for (const char* name : {"Y", "Width", "Height"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), field(name)) << name;
    }
}

TEST_F(PRegionEditorTest, shows_no_region_if_the_device_does_not_report_one_but_can_set_the_whole) {
    property->failsToRead = true;
    property->setValue(QRect(8, 8, 80, 80));
    property->sets.clear();
    open();
    for (const char* name : {"X", "Y", "Width", "Height"}) {
        EXPECT_EQ(shownText(field(name)), QString()) << name;
        EXPECT_FALSE(field(name)->isEnabled()) << name;
    }
    property->failsToRead = false;
    part<QPushButton>()->click();
    turn();
    EXPECT_EQ(property->sets, Sets({whole}));
    EXPECT_EQ(shown(), whole);
    EXPECT_TRUE(field("X")->isEnabled());
}
