// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

#include <apps/common/ome/POmeDescription.h>
#include <apps/common/record/PFrameWriter.h>
#include <apps/common/zarr/PBloscCompressor.h>
#include <apps/common/zarr/PChannelPlanes.h>
#include <apps/common/zarr/PFrameTable.h>
#include <apps/common/zarr/PZarrArray.h>
#include <apps/common/zarr/PZarrDocuments.h>

/// Writes a recording as OME-Zarr: a folder with a compressed file for each channel of each frame.
/// It gets its name when it has the first frame, and never replaces anything. From then on it is
/// always valid, with the frames written so far, even if the program is killed; finish() adds
/// the times of all frames to the OME-XML, the ledger and the tally.
class PZarrWriter : public PFrameWriter {
    Q_DECLARE_TR_FUNCTIONS(PZarrWriter)

public:
    /// The folder's path, and what is known about the recording.
    struct Options {
        QString path;
        PCameraIdentity camera;
        PSettingNames names;
        std::optional<double> pixelSizeUm;       ///< on the specimen, of a pixel as saved
        std::optional<double> sensorTemperature; ///< degrees Celsius
        bool pyramid = false;                    ///< also write each frame in smaller sizes
    };

    explicit PZarrWriter(const Options& options);

    /// The endings of names that select such a recording: ".ome.zarr".
    static QStringList endings();
    static bool isName(const QString& path);
    /// The sizes of a picture in its pyramid: halved until neither side is above 256 pixels.
    static std::vector<QSize> pyramid(const QSize& size);

    /// One: the frames are in order whatever happens. The compression uses more.
    int threads() const override { return 1; }
    /// All frames must have the same size and format.
    PStatus write(const PDeviceFrame& frame, quint64 number) override;
    PStatus finish(const PRecordEnd& end) override;

private:
    PStatus begin(const QImage& picture);
    PStatus writeDocuments();
    PStatus append(const PFrameStamp& stamp, const QImage& picture);
    PStatus describeAndWrite(quint64 index, const PFrameStamp& stamp, const QImage& picture);
    PStatus writeChunks(const QImage& picture);
    PStatus complete(quint64 index, const PFrameStamp& stamp);
    PStatus setFrames(quint64 count);
    PStatus writeUnfinishedXml(const PFrameStamp& stamp);
    void undo(quint64 index);
    PStatus writeFinished(const PRecordEnd& end);
    PStatus checkFrames() const;
    PStatus writeImage();
    PStatus failure(const QString& reason) const;

    const Options m_options;
    POmeDescription m_description;
    POmeDocument::Unfinished m_unfinished;
    PChannelPlanes m_planes;
    PBloscCompressor m_compressor;
    PZarrDocuments::Image m_image;
    PZarrFolder m_folder;
    std::vector<PZarrArray> m_levels; ///< use m_folder; the full size first
    PFrameTable m_table;
};
