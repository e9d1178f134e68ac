// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PZarrArray.h>

#include <apps/common/zarr/PZarrDocuments.h>
#include <apps/common/zarr/PZarrFiles.h>

#include <QDir>
#include <QDirIterator>

namespace {

// Hidden, so that readers which list the chunks do not take it for one.
const QString nextFrameName = u".part"_qs;

} // namespace

PStatus PZarrArray::create() {
    return PZarrFiles::makeFolder(m_recording.path(m_name));
}

PStatus PZarrArray::writeChunk(int channel, const QByteArray& compressed) {
    const QString frame = path(nextFrameName);
    const QString ofChannel = u"%1/%2"_qs.arg(frame, QString::number(channel));
    const QString rows = ofChannel + u"/0"_qs;
    PStatus status;
    if (channel == 0)
        status = PZarrFiles::makeFolder(frame);
    if (status.isOk())
        status = PZarrFiles::makeFolder(ofChannel);
    if (status.isOk())
        status = PZarrFiles::makeFolder(rows);
    return status.isOk()
               ? PZarrFiles::create(rows + u"/0"_qs, compressed.constData(), compressed.size())
               : status;
}

PStatus PZarrArray::publish(quint64 index) {
    const PStatus status = PZarrFiles::rename(path(nextFrameName), path(QString::number(index)));
    if (status.isOk())
        m_published = index + 1;
    return status;
}

PStatus PZarrArray::setFrames(quint64 count) {
    return PZarrFiles::replace(path(u".zarray"_qs),
                               PZarrDocuments::array(m_size, m_channels, count));
}

void PZarrArray::drop(quint64 index) {
    QDir(path(nextFrameName)).removeRecursively();
    if (m_published <= index)
        return; // what may have that name is not ours
    QDir(path(QString::number(index))).removeRecursively();
    m_published = index;
}

quint64 PZarrArray::countFrames(quint64 expected) const {
    quint64 count = 0;
    QDirIterator entries(m_recording.path(m_name), QDir::Dirs | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        bool isNumber = false;
        const quint64 index = entries.fileName().toULongLong(&isNumber);
        count += isNumber && index < expected ? 1 : 0;
    }
    return count;
}
