// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>

#include <QList>
#include <QString>

#include <utility>

struct PFrameStamp;

/// The information saved with a picture about how it was taken: keys and texts, in order.
using PPictureMetadata = QList<std::pair<QString, QString>>;

/// The text of a frame: program, camera, whether it is simulated, number, UTC time, mode, exposure,
/// every setting (PSettingTexts). Without a stamp, only program and camera. Any thread.
PPictureMetadata pictureMetadata(const PCameraIdentity& camera, const PFrameStamp* stamp);
