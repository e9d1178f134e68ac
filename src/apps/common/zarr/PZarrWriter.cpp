// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrWriter.h>

#include <apps/common/tiff/PPackedRows.h>
#include <apps/common/zarr/PZarrFiles.h>

#include <PCore/work/PGuardedCall.h>

#include <QFileInfo>

#include <algorithm>

namespace {

constexpr int smallEnough = 256; // pixels: a preview
const QString xmlName = u"OME/METADATA.ome.xml"_qs;
const QString tableName = u"OME/frames.csv"_qs;

} // namespace

PZarrWriter::PZarrWriter(const Options& options)
    : m_options(options)
    , m_description({options.path, options.camera, options.names, options.pixelSizeUm,
                     options.sensorTemperature, POmeDocument::Storage::Zarr}) {
}

QStringList PZarrWriter::endings() {
    return {u".ome.zarr"_qs};
}

bool PZarrWriter::isName(const QString& path) {
    const QStringList known = endings();
    return std::any_of(known.begin(), known.end(), [&](const QString& ending) {
        return path.endsWith(ending, Qt::CaseInsensitive);
    });
}

std::vector<QSize> PZarrWriter::pyramid(const QSize& size) {
    std::vector<QSize> levels{size};
    while (std::max(levels.back().width(), levels.back().height()) > smallEnough &&
           PChannelPlanes::canHalve(levels.back()))
        levels.emplace_back(levels.back().width() / 2, levels.back().height() / 2);
    return levels;
}

PStatus PZarrWriter::failure(const QString& reason) const {
    return PStatus::failure(tr("cannot save \"%1\": %2").arg(m_options.path, reason));
}

PStatus PZarrWriter::write(const PDeviceFrame& frame, quint64) {
    if (!frame.stamp)
        return failure(tr("the frame has no capture information"));
    const QImage picture = frame.image.toQImage();
    PStatus status;
    if (!m_folder.isCreated())
        status = begin(picture);
    else if (!m_description.fits(picture))
        status = PStatus::failure(tr("frame %1 differs in size or format from the first frame")
                                      .arg(frame.stamp->sequence));
    if (status.isOk())
        status = append(*frame.stamp, picture);
    return status.isOk() ? status : failure(status.reason());
}

PStatus PZarrWriter::begin(const QImage& picture) {
    PStatus status =
        PBloscCompressor::checkSize(std::size_t(picture.width()) * std::size_t(picture.height()));
    if (status.isOk())
        status = m_folder.create(m_options.path);
    if (!status.isOk())
        return status;
    m_image.name = QFileInfo(m_options.path).fileName();
    m_image.channels = PPackedRows::sampleCount(picture);
    m_image.pixelSizeUm = m_options.pixelSizeUm;
    m_image.levels =
        m_options.pyramid ? pyramid(picture.size()) : std::vector<QSize>{picture.size()};
    m_levels.clear();
    for (const QSize& size : m_image.levels)
        m_levels.emplace_back(m_folder, u"0/%1"_qs.arg(m_levels.size()), size, m_image.channels);
    return writeDocuments();
}

/// What does not change with each frame.
PStatus PZarrWriter::writeDocuments() {
    const std::pair<QString, QByteArray> documents[]{{u".zgroup"_qs, PZarrDocuments::group()},
                                                     {u".zattrs"_qs, PZarrDocuments::layout()},
                                                     {u"0/.zgroup"_qs, PZarrDocuments::group()},
                                                     {u"OME/.zgroup"_qs, PZarrDocuments::group()},
                                                     {u"OME/.zattrs"_qs, PZarrDocuments::series()}};
    PStatus status = PZarrFiles::makeFolder(m_folder.path(u"0"_qs));
    if (status.isOk())
        status = PZarrFiles::makeFolder(m_folder.path(u"OME"_qs));
    for (const auto& [name, bytes] : documents) {
        if (status.isOk())
            status = PZarrFiles::create(m_folder.path(name), bytes.constData(), bytes.size());
    }
    for (PZarrArray& level : m_levels) {
        if (status.isOk())
            status = level.create();
    }
    if (status.isOk())
        status = m_table.create(m_folder.path(tableName));
    return status.isOk() ? writeImage() : status;
}

PStatus PZarrWriter::writeImage() {
    return PZarrFiles::replace(m_folder.path(u"0/.zattrs"_qs), PZarrDocuments::image(m_image));
}

PStatus PZarrWriter::append(const PFrameStamp& stamp, const QImage& picture) {
    const quint64 index = m_description.frames();
    // There may be no memory for any of it, nor for undoing it, which then goes as far as it can.
    const PStatus status =
        PGuardedCall::status([&] { return describeAndWrite(index, stamp, picture); });
    if (!status.isOk())
        PGuardedCall::logged([&] { undo(index); });
    return status;
}

PStatus PZarrWriter::describeAndWrite(quint64 index, const PFrameStamp& stamp,
                                      const QImage& picture) {
    m_description.add(stamp, picture);
    const PStatus status = writeChunks(picture);
    return status.isOk() ? complete(index, stamp) : status;
}

PStatus PZarrWriter::writeChunks(const QImage& picture) {
    const std::vector<PPlane>& planes = m_planes.split(picture);
    for (int channel = 0; channel < m_image.channels; ++channel) {
        PPlane plane = planes[std::size_t(channel)];
        for (std::size_t level = 0; level < m_levels.size(); ++level) {
            if (level > 0)
                plane = m_planes.half(plane);
            PStatus status = m_compressor.compress(plane.samples, plane.size());
            if (status.isOk())
                status = m_levels[level].writeChunk(channel, m_compressor.result());
            if (!status.isOk())
                return status;
        }
    }
    return PStatus::Ok;
}

/// Makes the chunks of a frame part of the recording. If the program is killed in between, the full
/// size counts only frames that are in all other places.
PStatus PZarrWriter::complete(quint64 index, const PFrameStamp& stamp) {
    PStatus status;
    for (auto level = m_levels.rbegin(); level != m_levels.rend() && status.isOk(); ++level)
        status = level->publish(index);
    const POmePlane& plane = m_description.document().planes.back();
    if (status.isOk())
        status = m_table.append(index, stamp, plane.seconds, plane.exposureMs);
    if (status.isOk())
        status = setFrames(index + 1);
    if (status.isOk())
        status = writeUnfinishedXml(stamp);
    // Before the name: a recording with a name always has a frame.
    if (status.isOk())
        m_description.noteWritten(stamp);
    return status.isOk() && !m_folder.hasName() ? m_folder.giveName() : status;
}

PStatus PZarrWriter::setFrames(quint64 count) {
    PStatus status;
    for (auto level = m_levels.rbegin(); level != m_levels.rend() && status.isOk(); ++level)
        status = level->setFrames(count);
    return status;
}

/// The OME-XML as it is if no other frame follows.
PStatus PZarrWriter::writeUnfinishedXml(const PFrameStamp& stamp) {
    if (m_unfinished.xml.isEmpty())
        m_unfinished = m_description.toUnfinishedXml(stamp, tableName);
    m_unfinished.xml.replace(m_unfinished.countPosition, POmeDocument::countDigits,
                             POmeDocument::countText(m_description.frames()));
    return PZarrFiles::replace(m_folder.path(xmlName), m_unfinished.xml);
}

/// Removes what there is of a frame that could not be written as a whole. Its chunks first: they
/// may be why a disk is full.
void PZarrWriter::undo(quint64 index) {
    if (m_description.frames() > index)
        m_description.removeLast();
    for (PZarrArray& level : m_levels)
        level.drop(index);
    if (m_table.rows() > index)
        m_table.removeLast();
    // If a disk has no room even for this, the missing chunks are read as black.
    for (PZarrArray& level : m_levels)
        level.setFrames(index);
}

PStatus PZarrWriter::finish(const PRecordEnd& end) {
    if (m_description.frames() == 0) {
        m_folder.discard();
        return PStatus::Ok;
    }
    // The document of a long recording may need more memory than there is.
    const PStatus described = PGuardedCall::status([&] { return writeFinished(end); });
    // Damage by another program, after which the description cannot be written either.
    const PStatus whole = PGuardedCall::status([&] { return checkFrames(); });
    if (!whole.isOk())
        return failure(whole.reason());
    if (!described.isOk())
        return failure(tr("%1; all frames are complete, but their times are only in %2")
                           .arg(described.reason(), tableName));
    return PStatus::Ok;
}

/// The OME-XML last, even if the time step finds no room: it says that nothing else will change,
/// and programs that follow the recording end with it.
PStatus PZarrWriter::writeFinished(const PRecordEnd& end) {
    const QByteArray xml = m_description.toFinishedXml(end);
    const std::vector<POmePlane>& planes = m_description.document().planes;
    if (planes.size() > 1 && planes.back().seconds > 0)
        m_image.timeStep = planes.back().seconds / double(planes.size() - 1);
    const PStatus image = writeImage();
    const PStatus document = PZarrFiles::replace(m_folder.path(xmlName), xml);
    return document.isOk() ? image : document;
}

/// Whether another program has removed frames.
PStatus PZarrWriter::checkFrames() const {
    const quint64 expected = m_description.frames();
    for (const PZarrArray& level : m_levels) {
        const quint64 found = level.countFrames(expected);
        if (found != expected)
            return PStatus::failure(
                tr("the folder was changed while it was being written: it has %1 of %2 frames")
                    .arg(QString::number(found), QString::number(expected)));
    }
    return PStatus::Ok;
}
