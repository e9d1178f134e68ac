// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PExposureText.h>

#include <apps/common/camera/PFrameExposure.h>

#include <PCd/device/PDeviceRoles.h>

#include <QLocale>
#include <QStringList>

namespace {

QString number(double value, int digits = 4) {
    return QLocale().toString(value, 'g', digits);
}

} // namespace

QString PExposureText::time(double microseconds) {
    if (microseconds < 1000)
        return tr("%1 µs").arg(number(microseconds));
    if (microseconds < 1e6)
        return tr("%1 ms").arg(number(microseconds / 1e3));
    return tr("%1 s").arg(number(microseconds / 1e6));
}

QString PExposureText::of(const PDevice& device) {
    const PFrameExposure exposure = PFrameExposure::of(PDeviceRoles::of(device));
    QStringList parts;
    if (exposure.milliseconds)
        parts.append(time(*exposure.milliseconds * 1000));
    if (exposure.gain)
        parts.append(tr("gain %1").arg(number(*exposure.gain)));
    if (exposure.automatic)
        parts.append(tr("auto"));
    return parts.join(u", "_qs);
}
