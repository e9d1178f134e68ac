// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/ome/POmeDocument.h>
#include <apps/common/record/PFrameWriter.h>

#include <PCd/frame/PFrameStamp.h>

/// The notes of a recording that the OME schema has no fields for: camera, settings and their
/// changes, frame numbers, the ledger and the tally. One thread.
class POmeNotes {
public:
    explicit POmeNotes(PCameraIdentity camera);

    /// Adds a frame that has been written.
    void add(const PFrameStamp& stamp);

    /// The notes known when the first frame is written. `times`: where a reader finds the times of
    /// the frames if the recording is cut short.
    PPictureMetadata unfinished(const PFrameStamp& first, const QString& times) const;
    /// The complete notes at the end.
    PPictureMetadata finished(const PRecordEnd& end) const;

private:
    PPictureMetadata ofCamera(const PFrameStamp& first) const;
    void addChanges(const PFrameStamp& stamp);
    void addChange(const QString& key, const PFrameStamp& stamp, const QString& text);
    void addNumber(quint64 sequence);
    QString numbers() const;

    const PCameraIdentity m_camera;
    PPictureMetadata m_first;   ///< of the first frame
    PPictureMetadata m_changes; ///< of settings, since then; limited in number
    quint64 m_moreChanges = 0;
    std::shared_ptr<const PDeviceSettings> m_settings;
    std::vector<std::pair<quint64, quint64>> m_numbers; ///< first and last of frames in a row
};
