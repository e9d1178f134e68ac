// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PSettingNames.h>
#include <apps/common/ome/POmeDocument.h>
#include <apps/common/ome/POmeNotes.h>

#include <PCd/frame/PFrameStamp.h>

#include <QImage>

/// The OME-XML document of a recording, as its frames come. One thread.
class POmeDescription {
public:
    /// What is known about a recording before its first frame.
    struct Source {
        QString path;
        PCameraIdentity camera;
        PSettingNames names;
        std::optional<double> pixelSizeUm;       ///< on the specimen, of a pixel as saved
        std::optional<double> sensorTemperature; ///< degrees Celsius
        POmeDocument::Storage storage = POmeDocument::Storage::Tiff;
    };

    explicit POmeDescription(Source source);

    /// True if the picture has the size and format of the first one, or is that.
    bool fits(const QImage& picture) const;
    /// Adds a frame that is about to be written.
    void add(const PFrameStamp& stamp, const QImage& picture);
    /// Removes the frame that was added last: it could not be written.
    void removeLast() { m_document.planes.pop_back(); }
    /// Notes the frame that was added last: it has been written.
    void noteWritten(const PFrameStamp& stamp) { m_notes.add(stamp); }

    std::size_t frames() const { return m_document.planes.size(); }
    /// The document so far, with what is needed to build others.
    const POmeDocument& document() const { return m_document; }

    /// The document for a recording that ends without another one. `times`: where the frames have
    /// their times.
    POmeDocument::Unfinished toUnfinishedXml(const PFrameStamp& first, const QString& times);
    /// The complete document at the end.
    QByteArray toFinishedXml(const PRecordEnd& end);

private:
    void begin(const PFrameStamp& first, const QImage& picture);

    const Source m_source;
    POmeDocument m_document;
    POmeNotes m_notes;
    std::chrono::steady_clock::time_point m_start;
};
