// SPDX-License-Identifier: MIT
// The camera's properties, in their order, and the groups that show them.
#include <PCdPlugins/PTDevice/PTDevice.h>
#include <PCdPlugins/PTDevice/PTExtendedExposure.h>
#include <PCdPlugins/PTDevice/PTFanDevice.h>
#include <PCdPlugins/PTDevice/PTPropBacklight.h>
#include <PCdPlugins/PTDevice/PTPropProcessMode.h>
#include <PCdPlugins/PTDevice/PTPropRoi.h>
#include <PCdPlugins/PTDevice/PTProps.h>
#include <PCdPlugins/PTDevice/PTRoles.h>
#include <PCdPlugins/PTDevice/PTTECProperty.h>

#include <PCd/property/PDevicePropertyGroup.h>

#include <algorithm>

namespace {

/// Microseconds; longer exposures are not offered.
constexpr unsigned longestExposure = 50'000'000;

using Properties = QList<PDeviceProperty*>;

PTSwitch* makeSwitch(Toupcam_t* handle, int (*get)(Toupcam_t*, int*), int (*put)(Toupcam_t*, int),
                     const char* id, const QString& title) {
    return new PTSwitch(handle, get, put, id, title);
}

template <typename T>
PTNumber<T>* makeNumber(Toupcam_t* handle, int (*get)(Toupcam_t*, T*), int (*put)(Toupcam_t*, T),
                        T minimum, T maximum, const char* id, const QString& title) {
    return new PTNumber<T>(handle, get, put, {minimum, maximum, 1}, id, title);
}

template <typename Property>
Property* withDefault(Property* property, int value) {
    property->setDefaultValue(property->convertFromT(value));
    return property;
}

/// Not saved: the composite exposure property saves these values.
template <typename Property>
Property* notSaved(Property* property) {
    property->setSerializable(false);
    return property;
}

PDeviceProperty* exposureTime(Toupcam_t* handle, const QString& title) {
    unsigned minimum = 0;
    unsigned maximum = 0;
    unsigned standard = 0; // the SDK's own; not used
    Toupcam_get_ExpTimeRange(handle, &minimum, &maximum, &standard);
    auto* const time = makeNumber(handle, Toupcam_get_ExpoTime, Toupcam_put_ExpoTime, minimum,
                                  std::min(maximum, longestExposure), "autoexpottime", title);
    time->setType(PCD::DevicePropertyType::Duration);
    time->setUnit(ValueUnits::Microsecond);
    time->setUnitsType(ValueUnitType::Time);
    return notSaved(withDefault(time, 120));
}

PDeviceProperty* analogueGain(Toupcam_t* handle, const QString& title) {
    unsigned short minimum = 0;
    unsigned short maximum = 0;
    unsigned short standard = 0;
    Toupcam_get_ExpoAGainRange(handle, &minimum, &maximum, &standard);
    return notSaved(withDefault(makeNumber(handle, Toupcam_get_ExpoAGain, Toupcam_put_ExpoAGain,
                                           minimum, maximum, "autoexpogain", title),
                                100));
}

PDeviceProperty* speedLevel(Toupcam_t* handle, const QString& title, const QString& description) {
    // A negative result is an error, not the highest level.
    const auto highest = static_cast<unsigned short>(std::max(Toupcam_get_MaxSpeed(handle), 0));
    auto* const speed = makeNumber<unsigned short>(handle, Toupcam_get_Speed, Toupcam_put_Speed, 0,
                                                   highest, "speed", title);
    speed->setDescription(description);
    return withDefault(speed, highest);
}

} // namespace

QList<PDeviceProperty*> PTDevice::getSupportProperties() {
    Properties all{new PTExtendedExposure(m_handle, "extexposure", QString())};
    all += exposureProperties();
    all += whiteBalanceProperties();
    all += pictureProperties();
    all.append(speedLevel(m_handle, tr("Speed"),
                          tr("If the live video is not displayed, reduce the speed.")));
    all.append(roiProperty());
    if (modelFlags & TOUPCAM_FLAG_TEC_ONOFF)
        all.append(new PTECProperty(m_handle, "teccontrol", QString()));
    if (modelFlags & TOUPCAM_FLAG_FAN)
        all.append(new PTFanProperty(m_handle, "fan", QString()));
    all.append(new PTBacklightProperty(m_handle, "backlight", QString()));
    all += createProcessModeProperties(this, m_handle);
    PTRoles::declare(all);
    return all;
}

QList<PDeviceProperty*> PTDevice::exposureProperties() {
    auto* const automatic =
        makeSwitch(m_handle, Toupcam_get_AutoExpoEnable, Toupcam_put_AutoExpoEnable,
                   "autoexponeable", tr("Autoexposure"));
    return {notSaved(withDefault(automatic, true)),
            notSaved(makeNumber<unsigned short>(m_handle, Toupcam_get_AutoExpoTarget,
                                                Toupcam_put_AutoExpoTarget, 10, 230,
                                                "autoexpotarget", tr("Autotarget"))),
            exposureTime(m_handle, tr("Time")), analogueGain(m_handle, tr("Gain"))};
}

QList<PDeviceProperty*> PTDevice::whiteBalanceProperties() {
    // The two defaults are swapped, and outside their ranges. Kept, because existing files and
    // users depend on them.
    return {
        withDefault(new PTTempTint(m_handle, PTTempTint::Tint, {200, 2500, 1}, "tint", tr("Tint")),
                    6503),
        withDefault(
            new PTTempTint(m_handle, PTTempTint::Temperature, {2000, 15000, 1}, "temp", tr("Temp")),
            1000),
        new PTAWBOnce(m_handle, "awbonce", tr("Auto whitebalance"))};
}

QList<PDeviceProperty*> PTDevice::pictureProperties() {
    return {
        withDefault(makeNumber(m_handle, Toupcam_get_Contrast, Toupcam_put_Contrast, -100, 100,
                               "contrast", tr("Contrast")),
                    0),
        withDefault(
            makeNumber(m_handle, Toupcam_get_Hue, Toupcam_put_Hue, -180, 180, "hue", tr("Hue")), 0),
        withDefault(makeNumber(m_handle, Toupcam_get_Saturation, Toupcam_put_Saturation, 0, 255,
                               "saturation", tr("Saturation")),
                    128),
        withDefault(makeNumber(m_handle, Toupcam_get_Brightness, Toupcam_put_Brightness, -64, 64,
                               "brightness", tr("Brightness")),
                    0),
        withDefault(makeNumber(m_handle, Toupcam_get_Gamma, Toupcam_put_Gamma, 20, 180, "gamma",
                               tr("Gamma")),
                    100),
        makeSwitch(m_handle, Toupcam_get_Negative, Toupcam_put_Negative, "negative",
                   tr("Negative")),
        makeSwitch(m_handle, Toupcam_get_Chrome, Toupcam_put_Chrome, "chrome", tr("Chrome")),
        makeSwitch(m_handle, Toupcam_get_VFlip, Toupcam_put_VFlip, "vflip", tr("Vertical flip")),
        makeSwitch(m_handle, Toupcam_get_HFlip, Toupcam_put_HFlip, "hflip", tr("Horizontal flip"))};
}

PDeviceProperty* PTDevice::roiProperty() {
    auto* const roi = new PTPropRoi(m_handle, "roi", tr("ROI"));
    const QMetaObject::Connection connection = connect(
        this, &PDevice::modeChanged, this, [roi] { roi->followMode(); }, Qt::DirectConnection);
    // The caller owns the list: the property may be deleted before the device.
    connect(roi, &QObject::destroyed, this, [connection] { disconnect(connection); });
    return roi;
}

QList<PDevicePropertyGroup*> PTDevice::getSupportPropertyGroups() {
    const auto group = [this](const char* id, const QString& title,
                              std::initializer_list<const char*> members) {
        auto* const made = new PDevicePropertyGroup(QString::fromLatin1(id), title);
        for (const char* member : members)
            made->addProperty(getProperty(member));
        return made;
    };
    return {group("exposure", tr("Exposure settings"), {"extexposure"}),
            group("wb", tr("White balance"), {"tint", "temp", "awbonce"}),
            group("color", tr("Color"),
                  {"contrast", "hue", "saturation", "brightness", "gamma", "chrome", "negative",
                   "colormatrix"}),
            group("binning", tr("Binning"), {"binning"}),
            group("frame", tr("Frame"), {"rotate", "vflip", "hflip", "roi"}),
            group("speed", tr("Speed"), {"speed"}),
            group("backlight", tr("Backlight compensation"), {"backlight"}),
            group("cooling", tr("Cooling"), {"teccontrol", "fan"})};
}
