// SPDX-License-Identifier: MIT
#include <reliability/CompositeTruth.h>

#include <reliability/CallHook.h>

#include <PCdPlugins/PTDevice/ExtendedExposureData.h>
#include <PCdPlugins/PTDevice/PTDevice.h>

#include <PGui/PDoubleRangeWidget.h>
#include <PGui/PRangeWidget.h>

#include <PCd/property/PDeviceProperty.h>

#include <toupcam/toupcam.h>

#include <QCheckBox>
#include <QRadioButton>

#include <cmath>
#include <optional>

namespace {

constexpr double panelsRoundBy = 0.0051; // milliseconds: panels show hundredths

/// One control, and what the camera has; nothing if that cannot be compared.
struct Control {
    QString name;
    double shown;
    std::optional<double> onCamera;
};
using Controls = QList<Control>;

template <typename Widget>
const Widget& find(const QWidget& form, const char* name) {
    return *form.findChild<Widget*>(QLatin1String(name));
}

template <typename Widget>
double shownOn(const QWidget& form, const char* name) {
    if constexpr (std::is_base_of_v<QAbstractButton, Widget>)
        return find<Widget>(form, name).isChecked() ? 1 : 0;
    else
        return find<Widget>(form, name).value();
}

/// What the SDK reports; nothing if it does not answer.
template <typename Number>
std::optional<double> read(HRESULT (*get)(HToupcam, Number*), HToupcam handle) {
    Number number{};
    return get(handle, &number) >= 0 ? std::optional(double(number)) : std::nullopt;
}

std::optional<double> readOption(HToupcam handle, unsigned option) {
    int value = 0;
    return Toupcam_get_Option(handle, option, &value) >= 0 ? std::optional(double(value))
                                                           : std::nullopt;
}

std::optional<double> when(bool isCompared, std::optional<double> value) {
    return isCompared ? value : std::nullopt;
}

template <typename Widget>
bool hasRange(const QWidget& form, const char* name) {
    const auto range = find<Widget>(form, name).range();
    return range.minimum < range.maximum;
}

Controls readExposure(const QWidget& form, HToupcam h, const QVariant& cached) {
    const bool isTriggered =
        cached.value<ExtendedExposureData>().capturemode == ExtendedExposureData::Trigger;
    const std::optional<double> automatic = read(Toupcam_get_AutoExpoEnable, h);
    const bool isHeld = !isTriggered && automatic == 0.0;
    std::optional<double> time = read(Toupcam_get_ExpoTime, h);
    if (time)
        *time /= 1000; // microseconds
    return {
        {u"automatic exposure"_qs, shownOn<QCheckBox>(form, "cbAutoExposure"), automatic},
        {u"exposure target"_qs, shownOn<PRangeWidget>(form, "exposureTarget"),
         read(Toupcam_get_AutoExpoTarget, h)},
        {u"exposure gain"_qs, shownOn<PRangeWidget>(form, "exposureGain"),
         when(isHeld && hasRange<PRangeWidget>(form, "exposureGain"),
              read(Toupcam_get_ExpoAGain, h))},
        {u"exposure time"_qs, shownOn<PDoubleRangeWidget>(form, "exposureTime"),
         when(isHeld && hasRange<PDoubleRangeWidget>(form, "exposureTime"), time)},
    };
}

Controls readFan(const QWidget& form, HToupcam h, const QVariant&) {
    const std::optional<double> level = readOption(h, TOUPCAM_OPTION_FAN);
    const bool isOn = level.value_or(0) > 0;
    return {
        {u"fan"_qs, shownOn<QCheckBox>(form, "fanOnOff"), when(level.has_value(), isOn ? 1 : 0)},
        {u"fan level"_qs, shownOn<PRangeWidget>(form, "range"),
         when(isOn && hasRange<PRangeWidget>(form, "range"), level)}};
}

Controls readCooler(const QWidget& form, HToupcam h, const QVariant&) {
    return {
        {u"cooler"_qs, shownOn<QCheckBox>(form, "checkBox"), readOption(h, TOUPCAM_OPTION_TEC)}};
}

Controls readLight(const QWidget& form, HToupcam h, const QVariant&) {
    const std::optional<double> code = read(Toupcam_get_HZ, h);
    Controls controls;
    int number = 0;
    for (const char* const button : {"hz60", "hz50", "dc"}) { // in the order of their codes
        controls.append({QString::fromLatin1(button), shownOn<QRadioButton>(form, button),
                         when(code.has_value(), code == double(number) ? 1 : 0)});
        ++number;
    }
    return controls;
}

/// A panel of the plugin: its form, its property, and what its controls show.
struct Panel {
    const char* form;
    const char* property;
    Controls (*read)(const QWidget& form, HToupcam handle, const QVariant& cached);
    int controls;
};

constexpr Panel panels[] = {{"PTExtendedExposure", "extexposure", readExposure, 4},
                            {"PTFanControl", "fan", readFan, 2},
                            {"PTTecControl", "teccontrol", readCooler, 1},
                            {"PTBacklight", "backlight", readLight, 3}};

const QWidget* findForm(const QWidget& panel, const Panel& one) {
    return panel.findChild<QWidget*>(QLatin1String(one.form));
}

} // namespace

QStringList CompositeTruth::findLies(const QWidget& panel, PTDevice& device) {
    const CallHook::Pause pause;
    QStringList lies;
    for (const Panel& one : panels) {
        const QWidget* const form = findForm(panel, one);
        const PDeviceProperty* const property = device.getProperty(one.property);
        if (form == nullptr || property == nullptr || property->isUnread())
            continue;
        for (const Control& control : one.read(*form, device.sdkHandle(), property->valueInner())) {
            if (control.onCamera && std::abs(control.shown - *control.onCamera) > panelsRoundBy)
                lies.append(u"%1 (%2 shown, %3 true)"_qs.arg(control.name,
                                                             QString::number(control.shown),
                                                             QString::number(*control.onCamera)));
        }
    }
    return lies;
}

int CompositeTruth::countControls(const QWidget& panel) {
    int count = 0;
    for (const Panel& one : panels)
        count += findForm(panel, one) != nullptr ? one.controls : 0;
    return count;
}
