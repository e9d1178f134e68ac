// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeStackWriter.h>

#include <apps/common/program/PProgramName.h>
#include <apps/common/tiff/PPackedRows.h>

#include <QFileInfo>

#include <algorithm>

namespace {

// Offsets of classic TIFF have 32 bits. A margin is left for readers with signed or inexact
// arithmetic, and the size of everything but pixels is estimated generously.
constexpr quint64 classicLimit = 3'900'000'000;
constexpr quint64 bytesForDescription = 1'000'000;
constexpr quint64 bytesBesidesPixels = 2'000; // of a frame: directory and document

PTiffStack::Size sizeFor(const QImage& picture, std::optional<quint64> frames) {
    const quint64 pixels = quint64(picture.width()) * quint64(picture.height()) *
                           quint64(PPackedRows::sampleCount(picture));
    const quint64 mostFrames = (classicLimit - bytesForDescription) / (pixels + bytesBesidesPixels);
    return frames && *frames <= mostFrames ? PTiffStack::Size::UpTo4Gb
                                           : PTiffStack::Size::Unlimited;
}

QByteArray toText(const PFrameStamp& stamp) {
    return "Frame: " + QByteArray::number(stamp.sequence) +
           "\nTime: " + stamp.arrivedUtc.toString(Qt::ISODateWithMs).toLatin1();
}

} // namespace

POmeStackWriter::POmeStackWriter(const Options& options)
    : m_options(options)
    , m_notes(options.camera) {
    m_document.creator = PProgramName::withVersion();
}

QStringList POmeStackWriter::endings() {
    return {u".ome.tif"_qs, u".ome.tiff"_qs};
}

bool POmeStackWriter::isName(const QString& path) {
    const QStringList known = endings();
    return std::any_of(known.begin(), known.end(), [&](const QString& ending) {
        return path.endsWith(ending, Qt::CaseInsensitive);
    });
}

PStatus POmeStackWriter::failure(const QString& reason) const {
    return PStatus::failure(tr("cannot save \"%1\": %2").arg(m_options.path, reason));
}

PStatus POmeStackWriter::write(const PDeviceFrame& frame, quint64) {
    if (!frame.stamp)
        return failure(tr("the frame has no capture information"));
    const QImage picture = frame.image.toQImage();
    if (!m_stack.isOpen())
        return begin(frame, picture);
    if (m_document.planes.size() >= m_options.mostFrames)
        return failure(tr("one file holds no more than %1 frames").arg(m_options.mostFrames));
    return fitsInto(picture) ? append(frame, picture)
                             : failure(tr("frame %1 differs in size or format from the first frame")
                                           .arg(frame.stamp->sequence));
}

PStatus POmeStackWriter::begin(const PDeviceFrame& frame, const QImage& picture) {
    const PStatus made = m_stack.create(m_options.path, sizeFor(picture, m_options.frames));
    if (!made.isOk())
        return failure(made.reason());
    m_start = frame.stamp->arrived;
    m_document.name = QFileInfo(m_options.path).fileName();
    m_document.camera = m_options.camera;
    m_document.width = picture.width();
    m_document.height = picture.height();
    m_document.samples = PPackedRows::sampleCount(picture);
    m_document.taken = frame.stamp->arrivedUtc;
    m_document.exposure = PFrameExposure::of(*frame.stamp->settings, m_options.names);
    m_document.pixelSizeUm = m_options.pixelSizeUm;
    m_document.sensorTemperature = m_options.sensorTemperature;
    return append(frame, picture);
}

bool POmeStackWriter::fitsInto(const QImage& picture) const {
    return picture.width() == m_document.width && picture.height() == m_document.height &&
           PPackedRows::sampleCount(picture) == m_document.samples;
}

PStatus POmeStackWriter::append(const PDeviceFrame& frame, const QImage& picture) {
    const bool isFirst = m_document.planes.empty();
    m_document.planes.push_back(toPlane(*frame.stamp));
    QByteArray text = toText(*frame.stamp);
    if (isFirst) {
        m_document.notes = m_notes.unfinished(*frame.stamp);
        const POmeDocument::Unfinished unfinished = m_document.toUnfinishedXml();
        text = unfinished.xml;
        m_countPosition = unfinished.countPosition;
    }
    PStatus status = m_stack.append(
        picture, text,
        PPictureTags::of(m_options.camera, frame.stamp.get(), m_options.pixelSizeUm));
    if (!status.isOk()) {
        m_document.planes.pop_back();
        return failure(status.reason());
    }
    m_notes.add(*frame.stamp);
    status = m_stack.overwriteDescription(m_countPosition,
                                          POmeDocument::countText(m_document.planes.size()));
    return status.isOk() ? status : failure(status.reason());
}

POmePlane POmeStackWriter::toPlane(const PFrameStamp& stamp) const {
    const std::chrono::duration<double> since = stamp.arrived - m_start;
    return {since.count(), PFrameExposure::of(*stamp.settings, m_options.names).milliseconds};
}

PStatus POmeStackWriter::finish(const PRecordEnd& end) {
    if (m_document.planes.empty())
        return PStatus::Ok; // and no file
    m_document.notes = m_notes.finished(end);
    const PStatus described = m_stack.replaceDescription(m_document.toXml());
    const PStatus closed = m_stack.close();
    // Damage by another program, after which the text cannot be replaced either.
    if (!closed.isOk())
        return failure(closed.reason());
    if (!described.isOk())
        return failure(tr("%1; all pictures in the file are complete, but their times are missing")
                           .arg(described.reason()));
    return PStatus::Ok;
}
