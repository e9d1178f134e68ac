// SPDX-License-Identifier: MIT
#include <apps/common/camera/PFrameExposure.h>

#include <apps/common/camera/PCaptureMode.h>
#include <apps/common/camera/PSettingNames.h>

#include <PCd/frame/PFrameStamp.h>
#include <PCd/property/value/PCompositeFields.h>

#include <QRegularExpression>

#include <algorithm>

namespace {

QVariant valueOf(const PDeviceSettings& settings, const QByteArray& id) {
    const auto& values = settings.values;
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const auto& value) { return value.first == id; });
    return found == values.end() ? QVariant() : found->second;
}

/// A field of the record that holds all of the exposure; invalid without either.
QVariant recordField(const PDeviceSettings& settings, const char* field) {
    return PCompositeFields::read(valueOf(settings, "extexposure"), QLatin1String(field));
}

std::optional<double> number(const QVariant& value, double unit) {
    bool isNumber = false;
    const double read = value.toDouble(&isNumber);
    return isNumber ? std::optional(read * unit) : std::nullopt;
}

/// The record has the time of triggered frames in parts.
std::optional<double> recordTriggerMilliseconds(const PDeviceSettings& settings) {
    if (!recordField(settings, "seconds").isValid())
        return std::nullopt;
    const auto part = [&](const char* field) { return recordField(settings, field).toInt(); };
    const double seconds = 60.0 * part("minutes") + part("seconds");
    return 1e3 * seconds + part("milliseconds") + 1e-3 * part("microseconds");
}

std::optional<double> recordMilliseconds(const PDeviceSettings& settings) {
    return PCaptureMode::isTriggered(settings) ? recordTriggerMilliseconds(settings)
                                               : number(recordField(settings, "exp"), 1);
}

/// The plain setting is the camera's; the record's own is that of the video, triggered or not.
bool isAutomatic(const PDeviceSettings& settings) {
    const QVariant plain = valueOf(settings, "autoexponeable");
    return plain.isValid() ? plain.toBool()
                           : !PCaptureMode::isTriggered(settings) &&
                                 recordField(settings, "autoexpenabled").toBool();
}

/// With as many decimals as are needed, three at most.
QString decimalText(double value) {
    QString text = QString::number(value, 'f', 3);
    while (text.endsWith(u'0'))
        text.chop(1);
    if (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

QString binningOf(const PDeviceSettings& settings, const PSettingNames& names) {
    const PEnumerationItem item = names.item("binning", valueOf(settings, "binning"));
    static const QRegularExpression square(u"(\\d+)x\\1"_qs);
    const QRegularExpressionMatch match = square.match(item.name);
    if (match.hasMatch())
        return match.captured();
    return item.data == "1" ? u"1x1"_qs : QString();
}

} // namespace

PFrameExposure PFrameExposure::of(const PDeviceSettings& settings, const PSettingNames& names) {
    PFrameExposure exposure;
    exposure.milliseconds = number(valueOf(settings, "autoexpottime"), 1e-3);
    if (!exposure.milliseconds)
        exposure.milliseconds = recordMilliseconds(settings);
    exposure.gain = number(valueOf(settings, "autoexpogain"), 1e-2);
    if (!exposure.gain)
        exposure.gain = number(recordField(settings, "gain"), 1e-2);
    // A camera that does not answer answers 0, which no exposure and no gain can be.
    for (std::optional<double>* const value : {&exposure.milliseconds, &exposure.gain}) {
        if (*value && **value <= 0)
            value->reset();
    }
    exposure.automatic = isAutomatic(settings);
    exposure.binning = binningOf(settings, names);
    return exposure;
}

QString PFrameExposure::timeText() const {
    return milliseconds ? textOf(*milliseconds) + (automatic ? u" (automatic)"_qs : u" (manual)"_qs)
                        : QString();
}

QString PFrameExposure::gainText() const {
    return gain ? decimalText(*gain * 100) + u" %"_qs : QString();
}

QString PFrameExposure::textOf(double milliseconds) {
    return decimalText(milliseconds) + u" ms"_qs;
}
