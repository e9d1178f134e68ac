// SPDX-License-Identifier: MIT
#include <apps/common/PPictureText.h>

#include <PCd/PFrameStamp.h>
#include <PCd/PPropertyText.h>

namespace {

QString modeText(const PDeviceMode& mode) {
    return u"%1, id %2, %3 bits a pixel"_qs.arg(mode.name, QString::fromLatin1(mode.id))
        .arg(mode.bitDepth);
}

void appendStamp(PPictureText& text, const PFrameStamp& stamp) {
    // Each is counted apart, so the numbers must not be taken for one another.
    text.append({stamp.still ? u"Still picture"_qs : u"Frame"_qs, QString::number(stamp.sequence)});
    text.append({u"Time"_qs, stamp.arrivedUtc.toString(Qt::ISODateWithMs)});
    text.append({u"Mode"_qs, modeText(stamp.settings->mode)});
    for (const auto& [id, value] : stamp.settings->values) {
        if (value.isValid()) // an action has none
            text.append({u"Setting "_qs + QString::fromLatin1(id),
                         PPropertyText::ofValue(value, QVariant())});
    }
}

} // namespace

PPictureText pictureTextOf(const PCameraIdentity& camera, const PFrameStamp* stamp) {
    PPictureText text{
        {u"Camera"_qs, camera.id},
        {u"Model"_qs, camera.model},
        {u"Serial"_qs, camera.serial},
        {u"Simulated"_qs, camera.simulated ? u"yes"_qs : u"no"_qs},
    };
    if (stamp != nullptr)
        appendStamp(text, *stamp);
    return text;
}
