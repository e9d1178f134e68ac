// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/record/PFrameWriter.h>

#include <PCore/PStatus.h>

#include <QString>

#include <memory>
#include <optional>

class PDevice;

/// The files of a recording, whose form is chosen by the name that the user gives it. Any thread,
/// unless a function names another.
class PRecordOutput {
public:
    /// The forms.
    enum class Form {
        Stack,  ///< one file: .ome.tif
        Zarr,   ///< one folder: .ome.zarr
        Series, ///< a file for each frame: frame-####.png
    };
    /// The form of any name; a series, unless the ending is that of another form.
    static Form toForm(const QString& path);
    /// Fails, naming the path and what was expected, if it is not the name of a recording.
    static PStatus checkName(const QString& path);
    /// The same for the name of a series.
    static PStatus checkSeries(const QString& path);

    /// The name, which checkName() takes, and what is known about the recording.
    struct Options {
        QString path;
        std::optional<quint64> frames;     ///< the maximum number to come
        std::optional<double> pixelSizeUm; ///< on the specimen, of a pixel as saved
        bool pyramid = false;              ///< in OME-Zarr, also write each frame in smaller sizes
    };
    /// What writes the frames of this camera into the files. The device's thread.
    static std::unique_ptr<PFrameWriter> makeWriter(const Options& options,
                                                    const PCameraIdentity& camera, PDevice& device);
    /// The same for a series, whatever the ending. Any thread.
    static std::unique_ptr<PFrameWriter> makeSeries(const QString& path,
                                                    const PCameraIdentity& camera,
                                                    std::optional<double> pixelSizeUm);
};
