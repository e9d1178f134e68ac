// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

#include <apps/common/ome/POmeDescription.h>
#include <apps/common/record/PFrameWriter.h>
#include <apps/common/tiff/PTiffStack.h>

/// Writes a recording as one OME-TIFF file, uncompressed. The file gets its final name when it has
/// the first frame, and never replaces another. From then on it is always a valid OME-TIFF of
/// the frames written so far, even if the program is killed; finish() adds the times of all frames,
/// the ledger and the tally.
class POmeStackWriter : public PFrameWriter {
    Q_DECLARE_TR_FUNCTIONS(POmeStackWriter)

public:
    /// The most frames in one file: libtiff, which most programs use to read, supports no more
    /// directories.
    static constexpr quint64 framesAFileHolds = 1'048'576;

    /// The file's path, and what is known about the recording.
    struct Options {
        QString path;
        PCameraIdentity camera;
        PSettingNames names;
        std::optional<quint64> frames;           ///< the maximum number to come
        std::optional<double> pixelSizeUm;       ///< on the specimen, of a pixel as saved
        std::optional<double> sensorTemperature; ///< degrees Celsius
        quint64 mostFrames = framesAFileHolds;   ///< the next one fails
    };

    explicit POmeStackWriter(const Options& options);

    /// The endings of file names that select a stack: ".ome.tif" …
    static QStringList endings();
    static bool isName(const QString& path);

    int threads() const override { return 1; }
    /// All frames must have the same size and format.
    PStatus write(const PDeviceFrame& frame, quint64 number) override;
    PStatus finish(const PRecordEnd& end) override;
    quint64 missing() const override { return m_stack.missing(); }

private:
    PStatus begin(const PDeviceFrame& frame, const QImage& picture);
    PStatus append(const PDeviceFrame& frame, const QImage& picture);
    PStatus describeAndWrite(const PDeviceFrame& frame, const QImage& picture);
    PStatus failure(const QString& reason) const;

    const Options m_options;
    PTiffStack m_stack;
    POmeDescription m_description;
    qsizetype m_countPosition = 0; ///< in the unfinished document
};
