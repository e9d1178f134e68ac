// SPDX-License-Identifier: MIT
#include <PCdGui/CatalogueDevice.h>

#include <PCdGui/Words.h>

#include <PGui/PDoubleRangeWidget.h>
#include <PGui/PRangeWidget.h>

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>

namespace {

QWidget* makeCoolingPanel() {
    auto* const panel = new QWidget;
    auto* const layout = new QFormLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const target = new PDoubleRangeWidget(panel);
    target->setRange({-30, 30, 0.1});
    target->setValue(-10);
    target->setSuffix(words(" °C"));
    layout->addRow(new QCheckBox(words("Enable TEC"), panel));
    layout->addRow(words("Current temperature:"), new QLabel(words("21.4"), panel));
    layout->addRow(new QLabel(words("Target TEC temperature:"), panel));
    layout->addRow(target);
    return panel;
}

QWidget* makeFanPanel() {
    auto* const panel = new QWidget;
    auto* const layout = new QFormLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const speed = new PRangeWidget(panel);
    speed->setRange({0, 5, 1});
    speed->setValue(2);
    layout->addRow(new QCheckBox(words("Fan enable"), panel));
    layout->addRow(new QLabel(words("Fan speed:"), panel));
    layout->addRow(speed);
    return panel;
}

PDeviceProperty* number(const char* id, const char* title, PMinMaxRange<int> range, int value,
                        int standard) {
    auto* const property = new FakeNumber(id, words(title), range, value);
    property->setDefaultValue(standard);
    return property;
}

PDeviceProperty* exposureTime() {
    auto* const property = new FakeNumber("autoexpottime", words("Time"), {10, 50000000, 1}, 12500);
    property->setDefaultValue(120);
    property->setType(PCD::DevicePropertyType::Duration);
    property->setUnit(ValueUnits::Microsecond);
    property->setUnitsType(ValueUnitType::Time);
    return property;
}

PDeviceProperty* speed() {
    PDeviceProperty* const property = number("speed", "Speed", {0, 3, 1}, 3, 3);
    property->setDescription(words("If the live video is not displayed, reduce the speed."));
    return property;
}

QStringList list(std::initializer_list<const char*> titles) {
    QStringList all;
    for (const char* title : titles)
        all.append(words(title));
    return all;
}

} // namespace

CatalogueDevice::CatalogueDevice() {
    makeProperties = [this] { return properties(); };
    makeGroups = [this] { return groups(); };
}

QList<PDeviceProperty*> CatalogueDevice::properties() const {
    return {
        new FakeSwitch("autoexponeable", words("Autoexposure")),
        number("autoexpotarget", "Autotarget", {10, 230, 1}, 120, 120),
        exposureTime(),
        number("autoexpogain", "Gain", {100, 5000, 1}, 100, 100),
        number("tint", "Tint", {200, 2500, 1}, 1000, 6503),
        number("temp", "Temp", {2000, 15000, 1}, 6503, 1000),
        new FakeAction("awbonce", words("Auto whitebalance")),
        number("contrast", "Contrast", {-100, 100, 1}, 0, 0),
        number("hue", "Hue", {-180, 180, 1}, 0, 0),
        number("saturation", "Saturation", {0, 255, 1}, 128, 128),
        number("brightness", "Brightness", {-64, 64, 1}, 0, 0),
        number("gamma", "Gamma", {20, 180, 1}, 100, 100),
        new FakeSwitch("negative", words("Negative")),
        new FakeSwitch("chrome", words("Chrome")),
        new FakeSwitch("vflip", words("Vertical flip")),
        new FakeSwitch("hflip", words("Horizontal flip")),
        speed(),
        new FakeRegion("roi"),
        new FakeComposite("teccontrol", makeCoolingPanel),
        new FakeComposite("fan", makeFanPanel),
        new FakeChoice("colormatrix", words("Color matrix"), list({"Disable", "Enable"})),
        new FakeChoice("wbgain", words("WB Gain"), list({"Disable", "Enable"})),
        new FakeChoice("binning", words("Binning"), list({"No binning", "Add 2x2", "Average 2x2"})),
        new FakeChoice("rotate", words("Rotate"), list({"0°", "90°", "180°", "270°"}))};
}

QList<PDevicePropertyGroup*> CatalogueDevice::groups() const {
    const auto group = [this](const char* id, const char* title,
                              std::initializer_list<const char*> members) {
        auto* const made = new PDevicePropertyGroup(words(id), words(title));
        for (const char* member : members)
            made->addProperty(getProperty(member));
        return made;
    };
    return {group("exposure", "Exposure settings", {"extexposure"}),
            group("wb", "White balance", {"tint", "temp", "awbonce"}),
            group("color", "Color",
                  {"contrast", "hue", "saturation", "brightness", "gamma", "chrome", "negative",
                   "colormatrix"}),
            group("binning", "Binning", {"binning"}),
            group("frame", "Frame", {"rotate", "vflip", "hflip", "roi"}),
            group("speed", "Speed", {"speed"}),
            group("cooling", "Cooling", {"teccontrol", "fan"})};
}
