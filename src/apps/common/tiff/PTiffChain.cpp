// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffChain.h>

#include <apps/common/tiff/PTransactionalFile.h>

#include <QtEndian>

#include <limits>
#include <optional>

namespace {

/// The widths of one of the two formats, in bytes; TIFF 6.0, section 2, and the BigTIFF proposal.
struct Format {
    qint64 firstOffset; ///< where the header has the first directory's offset
    int offsetWidth;
    int countWidth; ///< of the number of entries, at a directory's beginning
    qint64 entrySize;
};

constexpr Format classic{4, 4, 2, 12};
constexpr Format big{8, 8, 8, 20};
constexpr quint64 bigVersion = 43;

std::optional<quint64> readNumber(const PTransactionalFile& file, qint64 offset, int width) {
    uchar bytes[8] = {};
    if (file.read(offset, bytes, width) != width)
        return std::nullopt;
    return qFromLittleEndian<quint64>(bytes);
}

/// The offset of the next directory; nothing if this one is not a directory.
std::optional<quint64> nextDirectory(const PTransactionalFile& file, quint64 directory,
                                     const Format& format) {
    constexpr quint64 mostEntries = std::numeric_limits<quint16>::max();
    if (directory > quint64(file.size()))
        return std::nullopt;
    const auto entries = readNumber(file, qint64(directory), format.countWidth);
    if (!entries || *entries == 0 || *entries > mostEntries)
        return std::nullopt;
    return readNumber(file,
                      qint64(directory) + format.countWidth + qint64(*entries) * format.entrySize,
                      format.offsetWidth);
}

} // namespace

quint64 PTiffChain::count(const PTransactionalFile& file, quint64 most) {
    const Format& format = readNumber(file, 2, 2) == bigVersion ? big : classic;
    std::optional<quint64> next = readNumber(file, format.firstOffset, format.offsetWidth);
    quint64 directories = 0;
    while (directories < most && next.value_or(0) != 0) {
        next = nextDirectory(file, *next, format);
        directories += next ? 1 : 0;
    }
    return directories;
}
