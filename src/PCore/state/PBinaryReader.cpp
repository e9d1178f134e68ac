// SPDX-License-Identifier: MIT
#include <PCore/state/PBinaryReader.h>

#include <PCore/state/PBinaryFormat.h>
#include <PCore/state/PNameScopes.h>
#include <PCore/state/PReadFault.h>
#include <PCore/state/PValueTree.h>

#include <QIODevice>
#include <QRect>
#include <QUuid>
#include <QtEndian>

#include <cmath>

namespace {

template <typename T>
QVariant readPayload(QDataStream& in) {
    T value{};
    in >> value;
    return QVariant::fromValue(value);
}

QVariant readPayload(QDataStream& in, quint32 type) {
    switch (type) {
    case QMetaType::Bool:
        return readPayload<bool>(in);
    case QMetaType::Int:
        return readPayload<qint32>(in);
    case QMetaType::LongLong:
        return readPayload<qint64>(in);
    case QMetaType::Double:
        return readPayload<double>(in);
    case QMetaType::QString:
        return readPayload<QString>(in);
    case QMetaType::QByteArray:
        return readPayload<QByteArray>(in);
    case QMetaType::QRect:
        return readPayload<QRect>(in);
    case QMetaType::QUuid:
        return readPayload<QUuid>(in);
    default:
        return {};
    }
}

/// Reads the records. The checksum was correct, so an error found here was made by the writer.
class RecordReader {
public:
    explicit RecordReader(const QByteArray& records)
        : m_in(records) {
        m_in.setVersion(PBinaryFormat::streamVersion);
    }

    PValueTree::Object document() {
        PValueTree::Object root = object(0);
        if (!m_in.atEnd())
            fail(u"bytes after the end of the document"_qs);
        return root;
    }

private:
    qsizetype offset() const { return PBinaryFormat::headerSize + qsizetype(m_in.device()->pos()); }

    [[noreturn]] void fail(const QString& what) const { throw PReadFault{offset(), what}; }

    template <typename T>
    T take() {
        T value{};
        m_in >> value;
        if (m_in.status() != QDataStream::Ok)
            fail(u"a record is cut short"_qs);
        return value;
    }

    PValueTree::Object object(qsizetype depth) {
        if (depth > PNameScopes::maxDepth)
            fail(u"objects nested more than %1 deep"_qs.arg(PNameScopes::maxDepth));
        PValueTree::Object result;
        while (const auto record = take<quint8>()) {
            PValueTree::Entry& entry = named(result);
            if (record == PBinaryFormat::Begin)
                entry.object = std::make_unique<PValueTree::Object>(object(depth + 1));
            else if (record == PBinaryFormat::Value)
                entry.value = value();
            else
                fail(u"an unknown record %1"_qs.arg(record));
        }
        return result;
    }

    PValueTree::Entry& named(PValueTree::Object& object) {
        const qsizetype start = offset() - 1; // of the record
        const auto name = take<QString>();
        PValueTree::Entry* entry = object.add(name, start);
        if (!entry)
            fail(u"the name \"%1\" twice"_qs.arg(name));
        return *entry;
    }

    QVariant value() {
        const auto type = take<quint32>();
        const QVariant result = readPayload(m_in, type);
        if (m_in.status() != QDataStream::Ok)
            fail(u"a value is cut short"_qs);
        const bool isUnusable =
            result.typeId() == QMetaType::Double && !std::isfinite(result.toDouble());
        if (!result.isValid() || isUnusable)
            fail(u"a value of type %1 that is never written"_qs.arg(type));
        return result;
    }

    QDataStream m_in;
};

quint32 numberAt(const QByteArray& bytes, qsizetype offset) {
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

void checkFrame(const QByteArray& bytes) {
    using namespace PBinaryFormat;
    if (bytes.size() < 4 || numberAt(bytes, 0) != magic)
        throw PReadFault{0, u"not this binary format (it starts with \"PCDS\")"_qs};
    if (bytes.size() < headerSize + checksumSize)
        throw PReadFault{bytes.size(), u"cut short"_qs};
    if (const quint32 found = numberAt(bytes, 4); found != version)
        throw PReadFault{4, u"version %1 is unknown (%2 was expected)"_qs.arg(
                                QString::number(found), QString::number(version))};
    const qsizetype end = bytes.size() - checksumSize;
    if (numberAt(bytes, end) != checksum(bytes.left(end)))
        throw PReadFault{end, u"the checksum is wrong: cut short or changed"_qs};
}

PValueTree::Object parsed(const QByteArray& bytes) {
    using namespace PBinaryFormat;
    checkFrame(bytes);
    const qsizetype size = bytes.size() - headerSize - checksumSize;
    return RecordReader(bytes.mid(headerSize, size)).document();
}

} // namespace

class PBinaryReader::Private {
public:
    PValueTree tree;
};

PBinaryReader::PBinaryReader()
    : d(std::make_unique<Private>()) {
}

PBinaryReader::~PBinaryReader() = default;

PStatus PBinaryReader::setDocument(const QByteArray& bytes) {
    d->tree.setRoot({});
    try {
        d->tree.setRoot(parsed(bytes));
    } catch (const PReadFault& fault) {
        return PStatus::failure(u"byte %1: %2"_qs.arg(QString::number(fault.offset), fault.what));
    }
    return PStatus::Ok;
}

bool PBinaryReader::beginObject(const QString& name) {
    return d->tree.enter(name);
}

void PBinaryReader::endObject() {
    d->tree.leave();
}

QStringList PBinaryReader::objectNames() const {
    return d->tree.current().names(true);
}

QStringList PBinaryReader::valueNames() const {
    return d->tree.current().names(false);
}

QVariant PBinaryReader::readValue(const QString& name) const {
    return d->tree.value(name);
}

QString PBinaryReader::position(const QString& name) const {
    const PValueTree::Entry* entry = d->tree.current().find(name);
    return entry ? u"byte %1"_qs.arg(entry->position) : QString();
}
