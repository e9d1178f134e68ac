// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PFrameTable.h>

#include <PCd/frame/PFrameStamp.h>

#include <PCore/file/PWholeFile.h>

namespace {

QByteArray tableNumber(double value) {
    return QByteArray::number(value, 'g', 12); // as in the OME-XML
}

} // namespace

PStatus PFrameTable::create(const QString& path) {
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return PStatus::failure(m_file.errorString());
    return write("index,frame,arrived_utc,delta_t_s,exposure_ms\n");
}

PStatus PFrameTable::append(quint64 index, const PFrameStamp& stamp, double seconds,
                            const std::optional<double>& exposureMs) {
    const PStatus status =
        write(QByteArray::number(index) + ',' + QByteArray::number(stamp.sequence) + ',' +
              stamp.arrivedUtc.toString(Qt::ISODateWithMs).toLatin1() + ',' + tableNumber(seconds) +
              ',' + (exposureMs ? tableNumber(*exposureMs) : QByteArray()) + '\n');
    m_rows += status.isOk() ? 1 : 0;
    return status;
}

PStatus PFrameTable::write(const QByteArray& line) {
    if (PWholeFile::writeAll(m_file, line)) {
        m_sizeBefore = m_size;
        m_size += line.size();
        return PStatus::Ok;
    }
    const QString reason = m_file.errorString();
    cut(m_size);
    return PStatus::failure(reason);
}

void PFrameTable::removeLast() {
    cut(m_sizeBefore);
    --m_rows;
}

void PFrameTable::cut(qint64 size) {
    m_size = size;
    m_file.resize(size);
    m_file.seek(size);
}
