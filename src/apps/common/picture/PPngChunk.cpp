// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPngChunk.h>

#include <QtEndian>

#include <zlib.h>

namespace {

QByteArray bigEndian(quint32 number) {
    number = qToBigEndian(number);
    return QByteArray(reinterpret_cast<const char*>(&number), sizeof number);
}

quint32 checksum(const QByteArray& bytes) {
    return quint32(crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), uInt(bytes.size())));
}

} // namespace

QByteArray PPngChunk::inserted(QByteArray png, const QByteArray& type, const QByteArray& data) {
    // The signature, then the header's length, type, 13 bytes and checksum (PNG specification, 5
    // and 11.2.2).
    constexpr qsizetype behindHeader = 8 + 4 + 4 + 13 + 4;
    const QByteArray body = type + data;
    return png.insert(behindHeader,
                      bigEndian(quint32(data.size())) + body + bigEndian(checksum(body)));
}
