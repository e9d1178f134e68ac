// SPDX-License-Identifier: MIT
#pragma once

#include <python/frame/PPythonFrame.h>
#include <python/host/PPybind.h>

#include <chrono>
#include <memory>
#include <optional>

class PPythonSession;

/// Stills and recordings of an open camera: each call waits until they are complete. Throws
/// PPythonError, and what a handler of signals raises. The thread of PPythonHost, with the
/// interpreter's lock.
class PPythonCapture {
public:
    explicit PPythonCapture(std::shared_ptr<PPythonSession> session);

    /// A still; of a camera that takes none, a live frame. Also during a stream. `timeout` is in
    /// seconds; unless given, 30 s and four times the exposure time. "TimeoutError" after it.
    std::unique_ptr<PPythonFrame> snap(std::optional<double> timeout);

    /// Which frames are recorded, and where. Times in seconds.
    struct Plan {
        QString path; ///< see PRecordOutput
        std::optional<quint64> frames;
        std::optional<double> duration;
        std::optional<double> interval;
        std::optional<double> pixelSizeUm;
        std::optional<double> timeout; ///< the longest time without a frame
        bool pyramid = false;          ///< in OME-Zarr, also smaller sizes
    };
    /// Records live frames into files, and returns when they are complete.
    ///
    /// A name that ends in .ome.tif gets all frames in one file, one that ends in .ome.zarr in one
    /// folder, compressed, and with `pyramid` also in smaller sizes; a name such as run-####.tif or
    /// run-####.png is a series. No file is ever replaced. It ends after `frames`, or after
    /// `duration` seconds. `interval` is that of a time-lapse, in seconds; `pixel_size` is in
    /// micrometres on the specimen, for the metadata; `timeout` is the longest time without a
    /// frame, in seconds. The frames are written by threads of their own: Python neither sees nor
    /// delays them. "RecordError" if the files do not have all frames; Ctrl-C ends it too. What was
    /// written by then is complete, and stays.
    /// @internal Returns the tally as a dict.
    py::dict record(const Plan& plan);

private:
    void prepareFiles(const Plan& plan) const;
    QString missingReason(const QString& what) const;
    const char* failureType(const char* ofOpenCamera) const;

    std::shared_ptr<PPythonSession> m_session;
};
