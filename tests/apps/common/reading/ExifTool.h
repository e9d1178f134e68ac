// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>

/// The tags that ExifTool (Debian's libimage-exiftool-perl) reads from a picture file, by
/// "Group:Tag", numbers as numbers. The test fails if ExifTool cannot be run or warns about the
/// file.
QJsonObject exifToolTags(const QString& file);
