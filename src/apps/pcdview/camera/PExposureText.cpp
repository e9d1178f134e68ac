// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PExposureText.h>

#include <apps/pcdview/camera/PPropertyValue.h>

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
    QStringList parts;
    if (const QVariant value = propertyValue(device, "autoexpottime"); value.isValid())
        parts.append(time(value.toDouble()));
    if (const QVariant value = propertyValue(device, "autoexpogain"); value.isValid())
        parts.append(tr("gain %1").arg(number(value.toDouble() / 100)));
    if (propertyValue(device, "autoexponeable").toBool())
        parts.append(tr("auto"));
    return parts.join(u", "_qs);
}
