// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>

#include <QList>
#include <QString>

#include <utility>

struct PFrameStamp;

/// What a saved picture says of its taking: keys and texts, in order.
using PPictureMetadata = QList<std::pair<QString, QString>>;

/// The text of a frame: program, camera, whether it is simulated, number, UTC time, mode, exposure,
/// every setting (PSettingTexts). With no stamp, program and camera alone. Any thread.
PPictureMetadata pictureMetadata(const PCameraIdentity& camera, const PFrameStamp* stamp);
