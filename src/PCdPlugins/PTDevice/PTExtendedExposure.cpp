// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTExtendedExposure.h>

#include <PCdPlugins/PTDevice/PTExtendedExposureWidget.h>
#include <PCdPlugins/PTDevice/PTLog.h>

#include <PCd/property/PReadWatch.h>

#include <QDebug>

#include <algorithm>
#include <limits>

namespace {

constexpr auto setText =
    "virtual bool PTExtendedExposure::trySetValueToDevice(ExtendedExposureData)";

/// Truncated to whole microseconds, not rounded. Numbers that the SDK cannot take (files may hold
/// anything) become the nearest one.
unsigned wholeMicroseconds(double microseconds) {
    constexpr double most = std::numeric_limits<unsigned>::max();
    return microseconds > 0 ? unsigned(std::min(microseconds, most)) : 0;
}

unsigned triggeredTime(const ExtendedExposureData& d) {
    return wholeMicroseconds(double(d.microseconds) + double(d.milliseconds) * 1e3 +
                             double(d.seconds) * 1e6 + double(d.minutes) * 60 * 1e6);
}

} // namespace

PTExtendedExposure::PTExtendedExposure(HToupCam h, const QByteArray& id, const QString& title)
    : PDevicePropertyT(id, title, PCD::DevicePropertyType::Custom)
    , m_h(h) {
    setValueInner(QVariant::fromValue(ExtendedExposureData()));
    PT_OP(Toupcam_get_ExpTimeRange(m_h, &uMinTime, &uMaxTime, &ndef));
    PT_OP(Toupcam_get_ExpoAGainRange(m_h, &uGainMin, &uGainMax, &uGainDef));
    qDebug() << "Expotime" << uMinTime << uMaxTime;
}

QWidget* PTExtendedExposure::createWidget() {
    return new PTExtendedExposureWidget(this, nullptr);
}

bool PTExtendedExposure::trySetValueToDevice(ExtendedExposureData d) {
    if (d.capturemode == ExtendedExposureData::Video)
        sendVideoSettings(d);
    else if (d.capturemode == ExtendedExposureData::Trigger)
        sendTriggerSettings(d);
    setValueInner(convertFromT(d));
    return true;
}

void PTExtendedExposure::sendVideoSettings(const ExtendedExposureData& d) {
    PT_OP_IN(setText, __LINE__, Toupcam_put_Option(m_h, TOUPCAM_OPTION_TRIGGER, 0));
    PT_OP_IN(setText, __LINE__, Toupcam_put_AutoExpoEnable(m_h, d.autoexpenabled));
    PT_OP_IN(setText, __LINE__, Toupcam_put_AutoExpoTarget(m_h, d.target));
    PT_OP_AS(setText, __LINE__, "Toupcam_put_ExpoTime(m_h, d.exp * 1e+3)",
             Toupcam_put_ExpoTime(m_h, wholeMicroseconds(d.exp * 1e+3)));
    PT_OP_IN(setText, __LINE__, Toupcam_put_ExpoAGain(m_h, d.gain));
}

void PTExtendedExposure::sendTriggerSettings(const ExtendedExposureData& d) {
    PT_OP_IN(setText, __LINE__, Toupcam_put_AutoExpoEnable(m_h, 0));
    const unsigned expotime = triggeredTime(d);
    PT_OP_IN(setText, __LINE__, Toupcam_put_ExpoTime(m_h, expotime));
    switch (d.triggermode) {
    case ExtendedExposureData::ExternalTrigger:
        PT_LOG_IN(setText) << "[Toupcam]"
                           << "Activate hardware trigger mode";
        PT_OP_IN(setText, __LINE__, Toupcam_put_Option(m_h, TOUPCAM_OPTION_TRIGGER, 2));
        break;
    case ExtendedExposureData::SoftwareTrigger:
        PT_LOG_IN(setText) << "[Toupcam]"
                           << "Activate software trigger mode";
        PT_OP_IN(setText, __LINE__, Toupcam_put_Option(m_h, TOUPCAM_OPTION_TRIGGER, 1));
        break;
    default:
        PT_LOG_IN(setText) << "[Toupcam]"
                           << "Unknown trigger mode trigger mode";
    }
}

bool PTExtendedExposure::fireTrigger(int frames) {
    return checkError(Toupcam_Trigger(m_h, static_cast<unsigned short>(frames)));
}

ExtendedExposureData PTExtendedExposure::tryGetValueFromDevice() {
    unsigned time = 0;
    unsigned short gain = 0;
    int autoexp = 0;
    unsigned short target = 0;
    const PReadWatch watch;
    PT_OP(Toupcam_get_ExpoTime(m_h, &time));
    PT_OP(Toupcam_get_ExpoAGain(m_h, &gain));
    PT_OP(Toupcam_get_AutoExpoEnable(m_h, &autoexp));
    PT_OP(Toupcam_get_AutoExpoTarget(m_h, &target));
    ExtendedExposureData d = value();
    d.autoexpenabled = autoexp != 0;
    d.exp = time / 1000.0;
    d.target = target;
    d.gain = gain;
    if (watch.hasFailed())
        setUnreadValueInner(convertFromT(d));
    else
        setValueInner(convertFromT(d));
    return d;
}

ExtendedExposureData PTExtendedExposure::convertToT(QVariant value) const {
    return value.value<ExtendedExposureData>();
}

QVariant PTExtendedExposure::convertFromT(ExtendedExposureData value) const {
    return QVariant::fromValue(value);
}

void PTExtendedExposure::trySetRange(QVariant) {
}

#include "moc_PTExtendedExposure.cpp"
