// SPDX-License-Identifier: MIT
#include <apps/common/system/PDiskSpeed.h>

#include <QByteArray>
#include <QFile>
#include <QRandomGenerator>
#include <QScopeGuard>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t speedBlockBytes = 8 << 20;
constexpr int mostSpeedBlocks = 16;
constexpr std::chrono::milliseconds longestMeasurement(500);

int openNameless(const QByteArray& folder) {
    const int descriptor = ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (descriptor >= 0 || (errno != EOPNOTSUPP && errno != EISDIR))
        return descriptor;
    // Some file systems have no files without a name.
    QByteArray name = folder + "/pcd-speed-XXXXXX";
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0)
        ::unlink(name.constData());
    return named;
}

using Block = std::vector<quint32>;

/// Bytes that neither a disk nor a file system can compress.
Block makeBlock() {
    Block block(speedBlockBytes / sizeof(quint32));
    QRandomGenerator(1).fillRange(block.data(), qsizetype(block.size()));
    return block;
}

/// As far as the disk: without the second step, only memory would be measured.
bool writeThrough(int descriptor, const Block& block) {
    const char* const bytes = reinterpret_cast<const char*>(block.data());
    std::size_t done = 0;
    while (done < speedBlockBytes) {
        const ssize_t written = ::write(descriptor, bytes + done, speedBlockBytes - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += std::size_t(written);
    }
    return ::fdatasync(descriptor) == 0;
}

PDiskSpeed::Result measurementFailure() {
    return {PStatus::failure(QString::fromLocal8Bit(strerror(errno)))};
}

} // namespace

PDiskSpeed::Result PDiskSpeed::measure(const QString& folder) {
    using Clock = std::chrono::steady_clock;
    const int descriptor = openNameless(QFile::encodeName(folder));
    if (descriptor < 0)
        return measurementFailure();
    const auto close = qScopeGuard([descriptor] { ::close(descriptor); });
    const Block block = makeBlock();
    const Clock::time_point start = Clock::now();
    std::chrono::duration<double> elapsed{0};
    int blocks = 0;
    while (blocks < mostSpeedBlocks && elapsed < longestMeasurement) {
        if (!writeThrough(descriptor, block))
            return measurementFailure();
        ++blocks;
        elapsed = Clock::now() - start;
    }
    return {PStatus::Ok, double(blocks) * double(speedBlockBytes) / 1e6 / elapsed.count()};
}
