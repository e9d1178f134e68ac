// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/replay/PReplayRecording.h>

#include <QFile>

#include <mutex>

/// The pixels of recorded frames: those of the file of frames, or a pattern for those of which only
/// the checksum was recorded. Any thread, but for open().
class PReplayFrames {
public:
    /// Uses this file. If it cannot be opened, all frames are patterns, and notice() has the
    /// reason.
    void open(const QString& path);

    /// Fills memory with these pixels, as many bytes as they have.
    void read(const PReplayPixels& pixels, unsigned char* data);

    /// Notes that a frame is left out, because there is no memory for its bytes.
    void reportLost(std::size_t bytes);

    /// What is wrong with the file, or with a frame; empty: nothing.
    QString notice() const;

private:
    bool readFile(const PReplayPixels& pixels, unsigned char* data);

    mutable std::mutex m_mutex; // guards all below: the delivery, and clients that pull
    QFile m_file;
    QString m_notice;
};
