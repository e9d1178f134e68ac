// SPDX-License-Identifier: MIT
#include <PTDevice/panels/PanelFixture.h>

#include <QComboBox>
#include <QLabel>

#include <algorithm>

PanelFixture::PanelFixture() {
    openCamera(fullCamera());
}

SimCameraText PanelFixture::fullCamera(int framesPerSecond) {
    const std::string rate = std::to_string(framesPerSecond);
    return SimCameraText()
        .withFlags(R"(["USB30", "TEC_ONOFF", "FAN", "TRIGGER_SOFTWARE", "TRIGGER_EXTERNAL"])")
        .withResolutions(R"([{"width": 64, "height": 48, "fps": )" + rate + "}]")
        .set("fanLevels", "5");
}

void PanelFixture::openCamera(const SimCameraText& camera) {
    device.reset();
    ToupcamSim_reset(); // handles are numbered from h1 again
    loadScene({camera});
    device = open();
    device->supportProperties();
}

std::unique_ptr<QWidget> PanelFixture::newPanel(const char* id) const {
    std::unique_ptr<QWidget> panel(property(id)->createWidget());
    if (panel == nullptr)
        throw std::runtime_error(std::string("there is no panel of ") + id);
    return panel;
}

std::unique_ptr<QWidget> PanelFixture::openPanel(const char* id) {
    std::unique_ptr<QWidget> panel = newPanel(id);
    EXPECT_TRUE(showActive(panel.get()));
    SimJournal::clear();
    log.clear();
    return panel;
}

void clickOn(QAbstractButton* button) {
    // A check box reacts only to clicks on its mark and text, at its left.
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
}

QStringList shownTexts(const QWidget* panel) {
    QStringList texts{panel->windowTitle()};
    for (const auto* label : panel->findChildren<QLabel*>())
        texts.append(label->text());
    for (const auto* button : panel->findChildren<QAbstractButton*>())
        texts.append(button->text());
    for (const auto* box : panel->findChildren<QComboBox*>()) {
        for (int index = 0; index < box->count(); ++index)
            texts.append(box->itemText(index));
    }
    return texts;
}

std::vector<std::string> puts() {
    std::vector<std::string> lines = SimJournal::lines();
    const auto isNoPut = [](const std::string& line) {
        return line.find("_put_") == std::string::npos;
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), isNoPut), lines.end());
    return lines;
}
