// SPDX-License-Identifier: MIT
#include "PatternDevice.h"

#include "PatternProperties.h"

#include <PCd/frame/PCdDipUtils.h>
#include <PCd/property/PDevicePropertyGroup.h>

/// Hands the present picture to the host; live ones on the camera's thread.
bool PatternDevice::takePicture(bool isStill) {
    const QSize size = PatternCamera::sizes[m_camera.value(PatternCamera::Resolution)];
    PImage image;
    if (!image.create(size.width(), size.height(), PDIP::ColorFormat::Bgr)) {
        reportDroppedFrames(PFrameOutcome::NoMemory);
        return false;
    }
    m_camera.read(size, image.rawData(PDIP::AccessMode::Write).data());
    if (isStill)
        processSnapshot(PCdDipUtils::imageAsDeviceFrame(image));
    else
        processFrameImage(image);
    return true;
}

QList<PDeviceMode> PatternDevice::getSupportModes() {
    QList<PDeviceMode> modes;
    for (const QSize size : PatternCamera::sizes) {
        const QString name = QString::asprintf("%dx%d", size.width(), size.height());
        modes.append({size.width(), size.height(), name, QByteArray::number(modes.size()), 24});
    }
    return modes;
}

PDeviceMode PatternDevice::getCurrentMode() {
    return getSupportModes().value(m_camera.value(PatternCamera::Resolution));
}

bool PatternDevice::trySetMode(const PDeviceMode& mode) {
    bool isNumber = false;
    const int resolution = mode.id.toInt(&isNumber);
    return isNumber && m_camera.setValue(PatternCamera::Resolution, resolution);
}

QList<PDeviceProperty*> PatternDevice::getSupportProperties() {
    using Camera = PatternCamera;
    auto* const exposure =
        new PatternNumber("exposure", tr("Exposure"), m_camera, Camera::Exposure);
    exposure->setType(PCD::DevicePropertyType::Duration);
    exposure->setUnit(ValueUnits::Microsecond);
    exposure->setUnitsType(ValueUnitType::Time);
    exposure->setDefaultValue(20'000);
    auto* const gain = new PatternNumber("gain", tr("Gain"), m_camera, Camera::Gain);
    gain->setDescription(tr("In percent: 100 amplifies nothing"));
    gain->setDefaultValue(100);
    auto* const pattern = new PatternChoice("pattern", tr("Pattern"), m_camera, Camera::Pattern);
    auto* const negative =
        new PatternSwitch("negative", tr("Negative"), m_camera, Camera::Negative);
    PPropertyRoles::declare(*exposure, {{PRole::ExposureTime, PRoleUnit::Microseconds}});
    PPropertyRoles::declare(*gain, {{PRole::Gain, PRoleUnit::Percent}});
    PPropertyRoles::declare(*negative, {{PRole::Negative}});
    return {exposure, gain, pattern, negative};
}

QList<PDevicePropertyGroup*> PatternDevice::getSupportPropertyGroups() {
    auto* const picture = new PDevicePropertyGroup("picture", tr("Picture"));
    for (const char* id : {"exposure", "gain", "pattern", "negative"})
        picture->addProperty(getProperty(id));
    return {picture};
}
