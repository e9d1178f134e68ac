// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/trace/replay/PReplayFields.h>
#include <toupcam/trace/replay/PReplayRecording.h>

#include <QHash>

class QIODevice;

/// Reads traces, which others may have written: nothing in them is trusted. One thread.
class PReplayReader {
public:
    /// Reads a file. Throws a PReplayError that names the first line that is not as expected. A
    /// last line that was cut off, as in a crash, is left out, with a notice. A file of any size
    /// takes no more memory than what it records.
    static PReplayRecording readFile(const QString& path);
    /// Likewise, from bytes.
    static PReplayRecording read(const QByteArray& bytes);

private:
    static PReplayRecording readFrom(QIODevice& device);
    void readLine(const QByteArray& text);
    void readHeader(const PReplayFields& line);
    void readCall(const PReplayFields& line);
    void readReturn(const PReplayFields& line);
    void readCallback(const PReplayFields& line);
    void readDone(const PReplayFields& line);

    int m_line = 0;
    PReplayRecording m_recording;
    QHash<qint64, std::size_t> m_openCalls; ///< by number, those that have not returned
    QHash<qint64, QString> m_openCallbacks; ///< likewise, with their names
};
