// SPDX-License-Identifier: MIT
// Saved state in the binary format, as PBinaryReader reads it: the input as a whole document, and
// as the records of a document whose header and checksum are right, which no mutation would find.
#include <FuzzSupport.h>
#include <StreamCopy.h>

#include <PCore/state/PBinaryReader.h>
#include <PCore/state/PBinaryWriter.h>

#include <QtEndian>

#include <zlib.h>

namespace {

constexpr qsizetype headerSize = 8;
constexpr qsizetype checksumSize = 4;

QByteArray document(const QByteArray& records) {
    static const QByteArray empty = PBinaryWriter().document();
    QByteArray bytes = empty.left(headerSize) + records + QByteArray(checksumSize, '\0');
    const qsizetype end = bytes.size() - checksumSize;
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), uInt(end));
    qToBigEndian(quint32(sum), bytes.data() + end);
    return bytes;
}

bool read(const QByteArray& bytes) {
    PBinaryReader reader;
    const bool isRead = reader.setDocument(bytes).isOk();
    if (isRead)
        StreamCopy::requireKept(reader);
    return isRead;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = Fuzz::toBytes(data, size);
    if (!read(bytes))
        read(document(bytes));
    return 0;
}
