// SPDX-License-Identifier: MIT
#pragma once

#include <python/frame/PPythonFrame.h>
#include <python/host/PPybind.h>

#include <chrono>
#include <memory>
#include <optional>

class PFrameWriter;
class PPythonSession;

/// Stills and recordings of an open camera: each call waits until they are complete. Throws
/// PPythonError, and what a handler of signals raises. The thread of PPythonHost, with the
/// interpreter's lock.
class PPythonCapture {
public:
    explicit PPythonCapture(std::shared_ptr<PPythonSession> session);

    /// A still; of a camera that takes none, the next live frame. Within the stream that runs, or
    /// in one of its own. The timeout is in seconds.
    std::unique_ptr<PPythonFrame> snap(std::optional<double> timeout);

    /// Which frames are recorded, and where. Times in seconds.
    struct Plan {
        QString path; ///< .ome.tif for a stack, #### for a series
        std::optional<quint64> frames;
        std::optional<double> duration;
        std::optional<double> interval;
        std::optional<double> pixelSizeUm;
        std::optional<double> timeout; ///< the longest time without a frame
    };
    /// Records, and returns the tally as a dict. "RecordError" if the files do not have what was
    /// planned; what is in them by then stays.
    py::dict record(const Plan& plan);

private:
    std::unique_ptr<PFrameWriter> makeWriter(const Plan& plan) const;
    QString missingReason(const QString& what) const;

    std::shared_ptr<PPythonSession> m_session;
};
