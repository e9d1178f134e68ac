// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QFile>

#include <optional>

struct PFrameStamp;

/// The times of the frames of a recording as a table that grows by a line with each: so they are
/// not lost if the program is killed. Comma-separated values. One thread.
class PFrameTable {
public:
    /// Makes a new file with the heading. Fails with the system's reason, without the path.
    PStatus create(const QString& path);

    /// Adds a frame: index, number, time of arrival, seconds since the first, milliseconds of
    /// exposure. Fails likewise; the file is then as before.
    PStatus append(quint64 index, const PFrameStamp& stamp, double seconds,
                   const std::optional<double>& exposureMs);
    /// Removes the frame that was added last.
    void removeLast();
    /// The number of frames in it.
    quint64 rows() const { return m_rows; }

private:
    PStatus write(const QByteArray& line);
    void cut(qint64 size);

    QFile m_file;
    qint64 m_sizeBefore = 0; ///< without the last line
    qint64 m_size = 0;
    quint64 m_rows = 0;
};
