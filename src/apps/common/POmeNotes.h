// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/PFrameWriter.h>
#include <apps/common/POmeDocument.h>
#include <apps/common/PSettingNames.h>

#include <PCd/PFrameStamp.h>

/// What a recording says in an OME document beyond the schema's own fields: camera, settings and
/// their changes, which frames there are, the accounts. One thread.
class POmeNotes {
public:
    POmeNotes(PCameraIdentity camera, PSettingNames names);

    /// Notes a frame that has been written.
    void add(const PFrameStamp& stamp);

    /// What can be said when the first frame is written and the end is not known.
    PPictureText unfinished(const PFrameStamp& first) const;
    /// What can be said at the end.
    PPictureText finished(const PRecordEnd& end) const;

private:
    PPictureText ofCamera(const PFrameStamp& first) const;
    void addChanges(const PFrameStamp& stamp);
    void addNumber(quint64 sequence);
    QString numbers() const;

    const PCameraIdentity m_camera;
    const PSettingNames m_names;
    PPictureText m_first;   ///< of the first frame
    PPictureText m_changes; ///< of settings, since then
    std::shared_ptr<const PDeviceSettings> m_settings;
    std::vector<std::pair<quint64, quint64>> m_numbers; ///< first and last of frames in a row
};
