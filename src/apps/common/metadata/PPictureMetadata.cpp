// SPDX-License-Identifier: MIT
#include <apps/common/metadata/PPictureMetadata.h>

#include <apps/common/camera/PFrameExposure.h>
#include <apps/common/camera/PSettingNames.h>
#include <apps/common/metadata/PSettingTexts.h>
#include <apps/common/program/PProgramName.h>

#include <PCd/frame/PFrameStamp.h>

namespace {

QString modeText(const PDeviceMode& mode) {
    return u"%1, id %2, %3 bits per pixel"_qs.arg(mode.name, QString::fromLatin1(mode.id),
                                                  QString::number(mode.bitDepth));
}

void appendStamp(PPictureMetadata& text, const PFrameStamp& stamp) {
    // Live frames and stills are numbered separately, so their keys differ.
    text.append({stamp.still ? u"Still picture"_qs : u"Frame"_qs, QString::number(stamp.sequence)});
    text.append({u"Time"_qs, stamp.arrivedUtc.toString(Qt::ISODateWithMs)});
    const PDeviceMode& mode = stamp.settings->mode;
    if (mode != PDeviceMode()) // else it was not read
        text.append({u"Mode"_qs, modeText(mode)});
    const QString exposure = PFrameExposure::of(*stamp.settings, {}).timeText();
    if (!exposure.isEmpty())
        text.append({u"Exposure"_qs, exposure});
    text += PSettingTexts::of(*stamp.settings);
}

} // namespace

PPictureMetadata pictureMetadata(const PCameraIdentity& camera, const PFrameStamp* stamp) {
    PPictureMetadata text{
        {u"Software"_qs, PProgramName::withVersion()},
        {u"Camera"_qs, camera.id},
        {u"Model"_qs, camera.model},
        {u"Serial"_qs, camera.serial},
        {u"Simulated"_qs, camera.simulated ? u"yes"_qs : u"no"_qs},
    };
    if (stamp != nullptr)
        appendStamp(text, *stamp);
    return text;
}
