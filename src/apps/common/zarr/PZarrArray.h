// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/zarr/PZarrFolder.h>

#include <QByteArray>
#include <QSize>

/// One array of a recording, a level of its pyramid: the dimensions t, c, y, x of 8-bit samples,
/// one chunk for each channel of each frame. A frame is written in a hidden folder, and appears
/// whole or not at all. All fail with the system's reason, without the path. One thread.
class PZarrArray {
public:
    /// `name`: of its folder in that of the recording, which must outlive it. The size is in
    /// pixels.
    PZarrArray(const PZarrFolder& recording, QString name, QSize size, int channels)
        : m_recording(recording)
        , m_name(std::move(name))
        , m_size(size)
        , m_channels(channels) {}

    /// Makes the folder, without a frame and without metadata: setFrames() writes that.
    PStatus create();
    /// Writes a chunk, compressed by PBloscCompressor, of the frame that comes next.
    PStatus writeChunk(int channel, const QByteArray& compressed);
    /// Makes what was written since the last call the frame with this index.
    PStatus publish(quint64 index);
    /// Rewrites the metadata: the array has this number of frames.
    PStatus setFrames(quint64 count);
    /// Removes the frame that comes next, whether it has this index already or is still being
    /// written.
    void drop(quint64 index);

    /// The number of frames in its folder, counted by their names, up to this number.
    quint64 countFrames(quint64 expected) const;

    const QSize& size() const { return m_size; }
    int channels() const { return m_channels; }

private:
    QString path(const QString& name) const { return m_recording.path(m_name + u'/' + name); }

    const PZarrFolder& m_recording;
    QString m_name;
    QSize m_size;
    int m_channels;
    quint64 m_published = 0; ///< frames
};
