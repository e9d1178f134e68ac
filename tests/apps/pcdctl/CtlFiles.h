// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

/// The colours at the centres of the three patches of a picture and at its corner, as names: "red
/// green blue black" for the `patches` source through a camera with default settings.
QString patchColours(const QImage& picture);

/// Limits the size of a process's files, as a user does with ulimit. For CtlProcess::with().
void limitFileSize(unsigned long bytes);
