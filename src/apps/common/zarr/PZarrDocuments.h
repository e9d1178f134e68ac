// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <optional>
#include <vector>

/// The JSON documents of a recording: Zarr version 2, and OME-Zarr version 0.4 in the layout of
/// bioformats2raw (ngff.openmicroscopy.org/0.4), whose image is in the group "0" and whose OME-XML
/// is in the group "OME". Any thread.
namespace PZarrDocuments {

/// Of a group: .zgroup.
QByteArray group();
/// Of an array with this number of frames, of this size in pixels: .zarray.
QByteArray array(const QSize& size, int channels, quint64 frames);
/// The attributes, .zattrs, of the recording and of its group "OME".
QByteArray layout();
QByteArray series();

/// What the attributes of an image say.
struct Image {
    QString name;
    int channels = 1;                  ///< 1: grey, 3: red, green, blue
    std::vector<QSize> levels;         ///< pixels; each half of the one before, rounded down
    std::optional<double> pixelSizeUm; ///< on the specimen, of a pixel of the first level
    std::optional<double> timeStep;    ///< seconds from frame to frame, on average
};
/// The attributes of the group with the image.
QByteArray image(const Image& image);

} // namespace PZarrDocuments
