// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PFrameExposure.h>
#include <apps/common/metadata/PPictureMetadata.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

/// The metadata of one picture of a recording.
struct POmePlane {
    double seconds = 0; ///< since the first picture
    std::optional<double> exposureMs;
};

/// The content of a recording's OME-XML (schema 2016-06, www.openmicroscopy.org/Schemas). All
/// pictures are of one camera and one size. A value type; any thread.
struct POmeDocument {
    /// Where the pixels are: in the file that also has the document, a colour picture as one plane
    /// of three samples; or in a Zarr array beside it, as a plane for each colour.
    enum class Storage { Tiff, Zarr };

    QString creator; ///< the program
    QString name;    ///< of the recording
    PCameraIdentity camera;
    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
    int samples = 1; ///< 1: grey, 3: red, green, blue; 8 bits each
    QDateTime taken; ///< the first picture
    PFrameExposure exposure;
    std::optional<double> pixelSizeUm;       ///< on the specimen, of a pixel as saved
    std::optional<double> sensorTemperature; ///< degrees Celsius
    PPictureMetadata notes;                  ///< what the schema has no field for
    std::vector<POmePlane> planes;           ///< one for each picture, whatever its colours
    Storage storage = Storage::Tiff;

    /// The whole document, as UTF-8.
    QByteArray toXml() const;

    /// A document for a recording whose length is not known yet: it assigns all pictures of the
    /// file to the stack, and describes the first one. The number of pictures is at
    /// `countPosition`, with countDigits digits, to be overwritten.
    struct Unfinished {
        QByteArray xml;
        qsizetype countPosition = 0;
    };
    /// The document for such a recording, as UTF-8; the first of `planes` is described.
    Unfinished toUnfinishedXml() const;
    static constexpr int countDigits = 10;
    /// A number of pictures, padded with zeros to countDigits.
    static QByteArray countText(std::size_t count);
};
