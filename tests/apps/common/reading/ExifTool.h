// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>

/// What ExifTool (Debian's libimage-exiftool-perl) reads in a picture file, by "Group:Tag", numbers
/// as numbers. The test fails if it cannot be run or warns of the file.
QJsonObject exifToolTags(const QString& file);
