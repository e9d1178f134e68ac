// SPDX-License-Identifier: MIT
// Panels whose property is set, and whose camera delivers images, as late as possible: by slots of
// destroyed(), that of the panel and those of its controls.
#include <PTDevice/panels/ExposurePanelFixture.h>

#include <PCdPlugins/PTDevice/FANDATA.h>
#include <PCdPlugins/PTDevice/PTPanel.h>
#include <PCdPlugins/PTDevice/TECDATA.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using testing::ElementsAreArray;

namespace {

const QString ignored = u"called on destroyed widget, just ignore"_qs;

struct EndRow {
    const char* name;
    const char* property;
    QVariant shown;          ///< what the panel shows when it is destroyed
    QVariant late;           ///< what is set during its destruction
    bool linesAreLogged;     ///< for each value that is set too late
    const char* numberField; ///< of the control that shows it, or null
};

ExtendedExposureData exposureRecord(bool automatic, int gain, int capturemode) {
    ExtendedExposureData d;
    d.autoexpenabled = automatic;
    d.gain = quint16(gain);
    d.capturemode = capturemode;
    return d;
}

class PanelEnds : public ExposurePanelFixture, public WithRow<EndRow> {
protected:
    void openShown() {
        property(GetParam().property)->setValue(GetParam().shown);
        panel = openPanel(GetParam().property);
    }
    /// When this object is destroyed, the property is set to the late value and then to the one
    /// shown, and the device delivers an image.
    void setPropertyWhenDestroyed(QObject* object) {
        QObject::connect(object, &QObject::destroyed, device.get(), [this] {
            for (const QVariant& value : {GetParam().late, GetParam().shown}) {
                property(GetParam().property)->setValue(value);
                ++lateValues;
            }
            emit device->imageChanged(PImage());
        });
    }
    /// The calls that those values alone cause.
    std::vector<std::string> expectedPuts() {
        SimJournal::clear();
        for (int i = 0; i < lateValues / 2; ++i) {
            for (const QVariant& value : {GetParam().late, GetParam().shown})
                property(GetParam().property)->setValue(value);
        }
        return puts();
    }
    qsizetype ignoredLines() const { return debugTexts(log).count(ignored); }

    int lateValues = 0;
};

class PanelWithNumberEnds : public PanelEnds {};

/// A panel with a member whose destruction is reported to the panel.
class PanelWithMember : public PTPanel {
public:
    explicit PanelWithMember(int* reactions) {
        QObject::connect(&m_member, &QObject::destroyed, &m_member,
                         whileAlive([reactions](const QObject*) { ++*reactions; }));
    }
    ~PanelWithMember() override { endLife(); }

private:
    QObject m_member;
};

const EndRow exposureRow{"exposure",
                         "extexposure",
                         QVariant::fromValue(exposureRecord(false, 200, 0)),
                         QVariant::fromValue(exposureRecord(true, 300, 1)),
                         true,
                         "exposureTime"};
const EndRow fanRow{
    "fan", "fan",  QVariant::fromValue(FANDATA{1, 3}), QVariant::fromValue(FANDATA{0, 2}),
    false, "range"};
const EndRow coolerRow{"cooler",
                       "teccontrol",
                       QVariant::fromValue(TECDATA{1, -100}),
                       QVariant::fromValue(TECDATA{0, 70}),
                       false,
                       "widget"};
const EndRow lightRow{"light", "backlight", QVariant(2), QVariant(0), false, nullptr};

} // namespace

ROW_TEST(PanelEnds, a_value_set_when_the_panel_is_destroyed_finds_it_gone) {
    openShown();
    int moves = 0;
    for (const auto* button : panel->findChildren<QAbstractButton*>())
        QObject::connect(button, &QAbstractButton::toggled, [&] { ++moves; });
    setPropertyWhenDestroyed(panel.get());
    panel.reset();
    ASSERT_EQ(lateValues, 2);
    EXPECT_EQ(moves, 0);
    EXPECT_EQ(ignoredLines(), GetParam().linesAreLogged ? 2 : 0);
    const std::vector<std::string> sent = puts();
    EXPECT_THAT(sent, ElementsAreArray(expectedPuts()));
}

ROW_TEST(PanelEnds, a_value_set_when_a_control_is_destroyed_finds_the_panel_gone) {
    openShown();
    const QList<QWidget*> controls = panel->findChildren<QWidget*>();
    for (QWidget* control : controls)
        setPropertyWhenDestroyed(control);
    panel.reset();
    ASSERT_EQ(lateValues, 2 * controls.size());
    EXPECT_EQ(ignoredLines(), GetParam().linesAreLogged ? lateValues : 0);
    const std::vector<std::string> sent = puts();
    EXPECT_THAT(sent, ElementsAreArray(expectedPuts()));
}

ROW_TEST(PanelEnds, with_its_window_is_no_different) {
    auto window = std::make_unique<QWidget>();
    openShown();
    panel.release()->setParent(window.get());
    for (QWidget* control : window->findChildren<QWidget*>())
        setPropertyWhenDestroyed(control);
    SimJournal::clear();
    window.reset();
    ASSERT_GT(lateValues, 4);
    const std::vector<std::string> sent = puts();
    EXPECT_THAT(sent, ElementsAreArray(expectedPuts()));
}

ROW_TEST(PanelEnds, a_control_moved_when_the_panel_is_destroyed_moves_nothing_else) {
    openShown();
    QWidget* const dying = panel.get();
    QObject::connect(dying, &QObject::destroyed, device.get(), [dying] {
        for (auto* button : dying->findChildren<QAbstractButton*>())
            button->toggle();
    });
    panel.reset();
    EXPECT_THAT(puts(), testing::IsEmpty());
    EXPECT_EQ(property(GetParam().property)->valueInner(), GetParam().shown);
}

ROW_TEST(PanelEnds, the_camera_may_end_when_the_panel_does) {
    openShown();
    QWidget* const dying = panel.get();
    QObject::connect(dying, &QObject::destroyed, dying, [this] { device.reset(); });
    panel.reset();
    EXPECT_EQ(device, nullptr);
}

ROW_TEST(PanelWithNumberEnds, ends_a_number_that_is_being_typed) {
    openShown();
    typeInto(findPart<PNumberField>(control<QWidget>(panel, GetParam().numberField)), u"5"_qs);
    panel.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(property(GetParam().property)->valueInner(), GetParam().shown);
    EXPECT_THAT(puts(), testing::IsEmpty());
}

ROWS(Panels, PanelEnds, exposureRow, fanRow, coolerRow, lightRow);
ROWS(Panels, PanelWithNumberEnds, exposureRow, fanRow, coolerRow);

TEST(PTPanelEnds, before_the_members_of_a_derived_panel) {
    int reactions = 0;
    { const PanelWithMember panel(&reactions); }
    EXPECT_EQ(reactions, 0);
}
