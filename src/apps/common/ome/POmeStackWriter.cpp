// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeStackWriter.h>

#include <apps/common/tiff/PPackedRows.h>

#include <PCore/work/PGuardedCall.h>

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
    , m_description({options.path, options.camera, options.names, options.pixelSizeUm,
                     options.sensorTemperature}) {
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
    if (m_description.frames() >= m_options.mostFrames)
        return failure(tr("one file holds no more than %1 frames").arg(m_options.mostFrames));
    return m_description.fits(picture)
               ? append(frame, picture)
               : failure(tr("frame %1 differs in size or format from the first frame")
                             .arg(frame.stamp->sequence));
}

PStatus POmeStackWriter::begin(const PDeviceFrame& frame, const QImage& picture) {
    const PStatus made = m_stack.create(m_options.path, sizeFor(picture, m_options.frames));
    return made.isOk() ? append(frame, picture) : failure(made.reason());
}

PStatus POmeStackWriter::append(const PDeviceFrame& frame, const QImage& picture) {
    const std::size_t before = m_description.frames();
    // There may be no memory for any of it.
    PStatus status = PGuardedCall::status([&] { return describeAndWrite(frame, picture); });
    if (!status.isOk()) {
        if (m_description.frames() > before)
            m_description.removeLast();
        return failure(status.reason());
    }
    m_description.noteWritten(*frame.stamp);
    status = m_stack.overwriteDescription(m_countPosition,
                                          POmeDocument::countText(m_description.frames()));
    return status.isOk() ? status : failure(status.reason());
}

PStatus POmeStackWriter::describeAndWrite(const PDeviceFrame& frame, const QImage& picture) {
    m_description.add(*frame.stamp, picture);
    QByteArray text = toText(*frame.stamp);
    if (m_description.frames() == 1) {
        const POmeDocument::Unfinished unfinished =
            m_description.toUnfinishedXml(*frame.stamp, u"the description of each"_qs);
        text = unfinished.xml;
        m_countPosition = unfinished.countPosition;
    }
    return m_stack.append(
        picture, text,
        PPictureTags::of(m_options.camera, frame.stamp.get(), m_options.pixelSizeUm));
}

PStatus POmeStackWriter::finish(const PRecordEnd& end) {
    if (m_description.frames() == 0)
        return PStatus::Ok; // and no file
    // The document of a long recording may need more memory than there is.
    const PStatus described = PGuardedCall::status(
        [&] { return m_stack.replaceDescription(m_description.toFinishedXml(end)); });
    const PStatus closed = m_stack.close();
    // Damage by another program, after which the text cannot be replaced either.
    if (!closed.isOk())
        return failure(closed.reason());
    if (!described.isOk())
        return failure(tr("%1; all pictures in the file are complete, but their times are missing")
                           .arg(described.reason()));
    return PStatus::Ok;
}
