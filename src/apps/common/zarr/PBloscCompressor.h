// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonObject>

#include <vector>

/// Compresses 8-bit samples with Blosc: LZ4 at its fastest after sorting their bits (bit shuffle).
/// One thread; it uses some of its own.
class PBloscCompressor {
    Q_DECLARE_TR_FUNCTIONS(PBloscCompressor)

public:
    /// The number of threads that compress at once; by default some of the processor's.
    explicit PBloscCompressor(int threads = defaultThreads());

    /// Fails for more bytes than Blosc takes at once, 2 GiB.
    static PStatus checkSize(std::size_t bytes);

    /// Compresses this number of bytes, or copies them if they cannot be made smaller. Fails for
    /// too many. Throws std::bad_alloc.
    PStatus compress(const uchar* bytes, std::size_t count);
    /// The result of the last compress(): a view, valid until the next one.
    QByteArray result() const {
        return QByteArray::fromRawData(m_result.data(), qsizetype(m_size));
    }

    /// How a reader is told to decompress: the compressor of an array in Zarr's metadata.
    static QJsonObject toJson();
    /// A half of the processor's threads, at most four: others compute meanwhile.
    static int defaultThreads();

private:
    const int m_threads;
    std::vector<char> m_result;
    std::size_t m_size = 0;
};
