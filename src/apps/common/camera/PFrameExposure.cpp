// SPDX-License-Identifier: MIT
#include <apps/common/camera/PFrameExposure.h>

#include <PCd/device/PDeviceRoles.h>

#include <QRegularExpression>

namespace {

/// The plain setting is that of the camera. A composite one has a separate time for live and for
/// triggered capture.
std::optional<double> readMilliseconds(const PDeviceRoles& roles) {
    const PRoleValue time = roles.find(PRole::ExposureTime);
    const bool isTriggers = !time.hasPlain(PRole::ExposureTime) && roles.isOn(PRole::Triggered);
    return isTriggers ? roles.number(PRole::TriggerTime) : time.number(PRole::ExposureTime);
}

/// The plain setting is read from the camera; the composite one always has the gain of the video.
bool isAutomatic(const PDeviceRoles& roles) {
    const PRoleValue automatic = roles.find(PRole::AutoExposure);
    return automatic.isOn(PRole::AutoExposure) &&
           (automatic.hasPlain(PRole::AutoExposure) || !roles.isOn(PRole::Triggered));
}

/// If the camera does not respond, values read as 0, which is not a valid exposure or gain.
std::optional<double> positive(std::optional<double> number) {
    return number && *number > 0 ? number : std::nullopt;
}

/// The number with as many decimals as it needs, at most three.
QString decimalText(double value) {
    QString text = QString::number(value, 'f', 3);
    while (text.endsWith(u'0'))
        text.chop(1);
    if (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

QString squareText(int side) {
    return u"%1x%1"_qs.arg(side);
}

/// A choice is named after its square, or has the camera's number for no binning; a number is the
/// "2x2": taken from the choice's name, or "1x1" for the choice whose number is 1; a plain number
/// is the side of the square. Empty if unknown.
QString binningText(const PDeviceRoles& roles, const PSettingNames& names) {
    const PRoleValue binning = roles.find(PRole::Binning);
    const PEnumerationItem item = names.item(binning.id, binning.part(PRole::Binning));
    static const QRegularExpression square(u"(\\d+)x\\1"_qs);
    const QRegularExpressionMatch match = square.match(item.name);
    if (match.hasMatch())
        return match.captured();
    if (item.data == "1")
        return squareText(1);
    const double side = binning.number(PRole::Binning).value_or(0);
    return side >= 1 ? squareText(int(side)) : QString();
}

} // namespace

PFrameExposure PFrameExposure::of(const PDeviceSettings& settings, const PSettingNames& names) {
    return of(PDeviceRoles::of(settings), names);
}

PFrameExposure PFrameExposure::of(const PDeviceRoles& roles, const PSettingNames& names) {
    PFrameExposure exposure;
    exposure.milliseconds = positive(readMilliseconds(roles));
    exposure.gain = positive(roles.number(PRole::Gain));
    exposure.automatic = isAutomatic(roles);
    exposure.binning = binningText(roles, names);
    return exposure;
}

QString PFrameExposure::timeText() const {
    return milliseconds ? toText(*milliseconds) + (automatic ? u" (automatic)"_qs : u" (manual)"_qs)
                        : QString();
}

QString PFrameExposure::gainText() const {
    return gain ? decimalText(*gain * 100) + u" %"_qs : QString();
}

QString PFrameExposure::toText(double milliseconds) {
    return decimalText(milliseconds) + u" ms"_qs;
}
