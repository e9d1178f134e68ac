// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDataStream>

#include <array>

/// What PBinaryWriter and PBinaryReader agree on. A document is the magic number, the version, the
/// records, a record End, and the checksum of everything before it; numbers are big-endian, texts
/// and values have their QDataStream format. Any thread.
namespace PBinaryFormat {

constexpr quint32 magic = 0x50434453; // "PCDS"
constexpr quint32 version = 1;
constexpr int streamVersion = QDataStream::Qt_6_4;
constexpr qsizetype headerSize = 8;
constexpr qsizetype checksumSize = 4;

/// The kind of a record: its first byte.
enum Record : quint8 {
    End = 0,   ///< closes the innermost object; one more after the last closes the document
    Begin = 1, ///< a name; opens an object
    Value = 2, ///< a name, the type as the number of its QMetaType, the value
};

/// The remainder of each byte, for checksum().
constexpr std::array<quint32, 256> makeCrcTable() {
    std::array<quint32, 256> table{};
    for (quint32 byte = 0; byte < 256; ++byte) {
        quint32 crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) ? 0xEDB88320u : 0u);
        table[byte] = crc;
    }
    return table;
}

/// CRC-32 of ISO 3309 (reflected polynomial 0xEDB88320, start and final exclusive-or all ones).
inline quint32 checksum(const QByteArray& bytes) {
    static constexpr std::array<quint32, 256> table = makeCrcTable();
    quint32 crc = 0xFFFFFFFFu;
    for (const char c : bytes)
        crc = (crc >> 8) ^ table[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
    return ~crc;
}

} // namespace PBinaryFormat
