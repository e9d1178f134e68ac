// SPDX-License-Identifier: MIT
#include <apps/common/metadata/PPictureTags.h>

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/camera/PFrameExposure.h>
#include <apps/common/camera/PSettingNames.h>
#include <apps/common/program/PProgramName.h>

#include <PCd/frame/PFrameStamp.h>

#include <PCore/PPrintableText.h>

PPictureTags PPictureTags::of(const PCameraIdentity& camera, const PFrameStamp* stamp,
                              std::optional<double> pixelSizeUm) {
    PPictureTags tags;
    tags.software = PProgramName::withVersion().toUtf8();
    if (camera.simulated)
        tags.make = "Simulated camera";
    tags.model = PPrintableText::toLine(camera.model).toUtf8();
    tags.serial = PPrintableText::toLine(camera.serial).toUtf8();
    tags.pixelSizeUm = pixelSizeUm;
    if (stamp == nullptr)
        return tags;
    const PFrameExposure exposure = PFrameExposure::of(*stamp->settings, {});
    tags.taken = stamp->arrivedUtc;
    if (exposure.milliseconds)
        tags.exposureSeconds = *exposure.milliseconds / 1e3;
    tags.isAutomatic = exposure.automatic;
    return tags;
}

bool PPictureTags::isEmpty() const {
    return software.isEmpty() && make.isEmpty() && model.isEmpty() && serial.isEmpty() &&
           !taken.isValid() && !exposureSeconds && !pixelSizeUm;
}

QByteArray PPictureTags::takenText() const {
    return taken.toLocalTime().toString(u"yyyy:MM:dd HH:mm:ss"_qs).toLatin1();
}
