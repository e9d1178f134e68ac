// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PBloscCompressor.h>

#include <QThread>

#include <blosc.h>

#include <algorithm>

namespace {

// Of noisy camera pictures LZ4 saves little and zstd more, but zstd takes several times as long;
// sorting the bits first gives LZ4 most of that at hardly any cost.
constexpr char bloscAlgorithm[] = BLOSC_LZ4_COMPNAME;
constexpr int bloscLevel = 1;
constexpr int bloscShuffle = BLOSC_BITSHUFFLE;
constexpr int mostBloscThreads = 4;

} // namespace

PBloscCompressor::PBloscCompressor(int threads)
    : m_threads(threads) {
}

int PBloscCompressor::defaultThreads() {
    return std::clamp(QThread::idealThreadCount() / 2, 1, mostBloscThreads);
}

PStatus PBloscCompressor::checkSize(std::size_t bytes) {
    if (bytes <= BLOSC_MAX_BUFFERSIZE)
        return PStatus::Ok;
    return PStatus::failure(
        tr("a channel of %1 bytes is too large: expected at most %2")
            .arg(QString::number(bytes), QString::number(std::size_t(BLOSC_MAX_BUFFERSIZE))));
}

PStatus PBloscCompressor::compress(const uchar* bytes, std::size_t count) {
    const PStatus possible = checkSize(count);
    if (!possible.isOk())
        return possible;
    m_result.resize(count + BLOSC_MAX_OVERHEAD);
    // The function without a global state: several recordings may run at once.
    const int size =
        blosc_compress_ctx(bloscLevel, bloscShuffle, sizeof(uchar), count, bytes, m_result.data(),
                           m_result.size(), bloscAlgorithm, 0, m_threads);
    m_size = std::size_t(std::max(size, 0));
    return size > 0 ? PStatus() : PStatus::failure(tr("the picture cannot be compressed"));
}

QJsonObject PBloscCompressor::toJson() {
    return {{u"id"_qs, u"blosc"_qs},
            {u"cname"_qs, QString::fromLatin1(bloscAlgorithm)},
            {u"clevel"_qs, bloscLevel},
            {u"shuffle"_qs, bloscShuffle},
            {u"blocksize"_qs, 0}};
}
