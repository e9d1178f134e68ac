// SPDX-License-Identifier: MIT
// The appearance of the panels. With PCD_SCREENSHOTS=<folder> pictures are saved there as
// panel-<name>-<lang>.png.
#include <PTDevice/panels/ExposurePanelFixture.h>
#include <PTDevice/panels/RussianTexts.h>
#include <PTDevice/panels/SdkReadings.h>

#include <PCdPlugins/PTDevice/FANDATA.h>
#include <PCdPlugins/PTDevice/TECDATA.h>

#include <support/QtPrinters.h>

#include <QDir>
#include <QLabel>

#include <gmock/gmock.h>

using testing::IsEmpty;

namespace {

struct PictureRow {
    const char* name;
    const char* property;
    bool russian;
    /// The width of the form; for one without a size, that of the exposure panel above it. In
    /// Russian the cooler's check box needs more, with the reading of the voltage beside it.
    int width;
};

class PanelPictures : public ExposurePanelFixture, public WithRow<PictureRow> {
public:
    static std::string toRowName(const PictureRow& row) {
        return std::string(row.name) + (row.russian ? "_ru" : "_en");
    }

protected:
    /// Sets values that are usual in practice.
    void bringToWork() {
        ExtendedExposureData d;
        d.autoexpenabled = false;
        d.exp = 20;
        if (GetParam().name == std::string("trigger"))
            d = triggerRecord();
        if (GetParam().name == std::string("external")) {
            d = triggerRecord();
            d.triggermode = ExtendedExposureData::ExternalTrigger;
            d.spincount = 25;
        }
        set(d);
        property("fan")->setValue(QVariant::fromValue(FANDATA{1, 3}));
        property("teccontrol")->setValue(QVariant::fromValue(TECDATA{1, -100}));
    }
    /// The labels and buttons whose text is cut off.
    QStringList cutOff() const {
        QStringList texts;
        for (const auto* label : panel->findChildren<QLabel*>()) {
            const int height = label->wordWrap() ? label->heightForWidth(label->width())
                                                 : label->sizeHint().height();
            const bool wide = !label->wordWrap() && label->width() < label->sizeHint().width();
            if (label->isVisible() && (wide || label->height() < height))
                texts.append(label->text());
        }
        for (const auto* one : panel->findChildren<QAbstractButton*>()) {
            if (one->isVisible() && one->width() < one->minimumSizeHint().width())
                texts.append(one->text());
        }
        return texts;
    }
    void save() const {
        const QString folder = qEnvironmentVariable("PCD_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        const QString name = u"panel-%1-%2.png"_qs.arg(QLatin1String(GetParam().name),
                                                       GetParam().russian ? u"ru"_qs : u"en"_qs);
        ASSERT_TRUE(panel->grab().save(QDir(folder).filePath(name)));
    }
};

} // namespace

ROW_TEST(PanelPictures, show_every_text_as_a_whole) {
    const SdkReadings readings(-87, 73, 120);
    std::optional<RussianTexts> russian;
    if (GetParam().russian)
        russian.emplace();
    openCamera(fullCamera());
    bringToWork();
    panel = openPanel(GetParam().property);
    if (const auto* const voltage = panel->findChild<QLabel*>(u"tecVoltage"_qs)) {
        ASSERT_TRUE(waitUntil([&] { return voltage->text().startsWith(u"7.3/12"_qs); }));
    }
    panel->resize(GetParam().width, panel->height());
    QCoreApplication::processEvents();
    EXPECT_EQ(panel->width(), GetParam().width) << "it needs to be wider";
    EXPECT_THAT(cutOff(), IsEmpty());
    save();
}

ROWS(Panels, PanelPictures, PictureRow{"video", "extexposure", false, 264},
     PictureRow{"video", "extexposure", true, 264},
     PictureRow{"trigger", "extexposure", false, 264},
     PictureRow{"trigger", "extexposure", true, 264},
     PictureRow{"external", "extexposure", false, 264},
     PictureRow{"external", "extexposure", true, 264}, PictureRow{"fan", "fan", false, 264},
     PictureRow{"fan", "fan", true, 264}, PictureRow{"cooler", "teccontrol", false, 264},
     PictureRow{"cooler", "teccontrol", true, 348}, PictureRow{"light", "backlight", false, 300},
     PictureRow{"light", "backlight", true, 300});
