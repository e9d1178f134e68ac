// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogSink.h>

/// Passes the log of framework and plugins on to GStreamer's (GST_DEBUG=pcd:4), where users of
/// pipelines look for it. The thread that logs.
class PGstLog : public PLogSink {
public:
    /// From now on, for the whole process; once is enough.
    static void install();

    void write(const PLogRecord& record) override;
};
