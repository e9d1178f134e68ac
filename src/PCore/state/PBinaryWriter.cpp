// SPDX-License-Identifier: MIT
#include <PCore/state/PBinaryWriter.h>

#include <PCore/state/PBinaryFormat.h>

#include <QIODevice>
#include <QRect>
#include <QUuid>

namespace {

class Appender : public QDataStream {
public:
    explicit Appender(QByteArray* bytes)
        : QDataStream(bytes, QIODevice::Append) {
        setVersion(PBinaryFormat::streamVersion);
    }
};

void writePayload(QDataStream& out, const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        out << value.toBool();
        break;
    case QMetaType::Int:
        out << qint32(value.toInt());
        break;
    case QMetaType::LongLong:
        out << qint64(value.toLongLong());
        break;
    case QMetaType::Double:
        out << value.toDouble();
        break;
    case QMetaType::QByteArray:
        out << value.toByteArray();
        break;
    case QMetaType::QRect:
        out << value.toRect();
        break;
    case QMetaType::QUuid:
        out << value.toUuid();
        break;
    default: // text; PNameScopes lets no other type through
        out << value.toString();
        break;
    }
}

} // namespace

void PBinaryWriter::beginObject(const QString& name) {
    if (m_scopes.enter(name))
        Appender(&m_records) << quint8(PBinaryFormat::Begin) << name;
}

void PBinaryWriter::endObject() {
    if (m_scopes.leave())
        Appender(&m_records) << quint8(PBinaryFormat::End);
}

bool PBinaryWriter::writeValue(const QString& name, const QVariant& value) {
    if (!m_scopes.addValue(name, value))
        return false;
    Appender out(&m_records);
    out << quint8(PBinaryFormat::Value) << name << quint32(value.typeId());
    writePayload(out, value);
    return true;
}

QByteArray PBinaryWriter::document() const {
    QByteArray bytes;
    Appender(&bytes) << PBinaryFormat::magic << PBinaryFormat::version;
    bytes += m_records;
    // Ends the open objects, then the document: a zero byte for each.
    bytes += QByteArray(m_scopes.depth() + 1, char(PBinaryFormat::End));
    Appender(&bytes) << PBinaryFormat::checksum(bytes);
    return bytes;
}
