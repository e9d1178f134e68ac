// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

/// The colours in the middles of the three patches of a picture and at its corner, as names:
/// "red green blue black" for the patches source through a faithful camera.
QString patchColours(const QImage& picture);

/// A process's files may not grow beyond this; writing on fails instead of ending the process. For
/// CtlProcess::with().
void limitFileSize(unsigned long bytes);
