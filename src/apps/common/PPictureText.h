// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/PCameraIdentity.h>

#include <QList>
#include <QString>

#include <utility>

struct PFrameStamp;

/// What a saved picture says of its taking: keys and texts, in order.
using PPictureText = QList<std::pair<QString, QString>>;

/// The text of a frame: camera, whether it is simulated, number, UTC time, mode, every setting.
/// With no stamp, the camera alone. Any thread.
PPictureText pictureTextOf(const PCameraIdentity& camera, const PFrameStamp* stamp);
