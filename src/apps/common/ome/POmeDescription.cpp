// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeDescription.h>

#include <apps/common/program/PProgramName.h>
#include <apps/common/tiff/PPackedRows.h>

#include <QFileInfo>

#include <utility>

POmeDescription::POmeDescription(Source source)
    : m_source(std::move(source))
    , m_notes(m_source.camera) {
    m_document.creator = PProgramName::withVersion();
    m_document.storage = m_source.storage;
}

bool POmeDescription::fits(const QImage& picture) const {
    return frames() == 0 ||
           (picture.width() == m_document.width && picture.height() == m_document.height &&
            PPackedRows::sampleCount(picture) == m_document.samples);
}

void POmeDescription::add(const PFrameStamp& stamp, const QImage& picture) {
    if (frames() == 0)
        begin(stamp, picture);
    const std::chrono::duration<double> since = stamp.arrived - m_start;
    m_document.planes.push_back(
        {since.count(), PFrameExposure::of(*stamp.settings, m_source.names).milliseconds});
}

void POmeDescription::begin(const PFrameStamp& first, const QImage& picture) {
    m_start = first.arrived;
    m_document.name = QFileInfo(m_source.path).fileName();
    m_document.camera = m_source.camera;
    m_document.width = picture.width();
    m_document.height = picture.height();
    m_document.samples = PPackedRows::sampleCount(picture);
    m_document.taken = first.arrivedUtc;
    m_document.exposure = PFrameExposure::of(*first.settings, m_source.names);
    m_document.pixelSizeUm = m_source.pixelSizeUm;
    m_document.sensorTemperature = m_source.sensorTemperature;
}

POmeDocument::Unfinished POmeDescription::toUnfinishedXml(const PFrameStamp& first,
                                                          const QString& times) {
    m_document.notes = m_notes.unfinished(first, times);
    return m_document.toUnfinishedXml();
}

QByteArray POmeDescription::toFinishedXml(const PRecordEnd& end) {
    m_document.notes = m_notes.finished(end);
    return m_document.toXml();
}
