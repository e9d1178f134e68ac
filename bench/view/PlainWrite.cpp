// SPDX-License-Identifier: MIT
#include <view/PlainWrite.h>

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr qint64 piece = 512 * 1024; // see stripBytes of PTiffStack

bool writeAll(QFile& file, qint64 bytes) {
    const QByteArray pixels(piece, 0x55);
    for (qint64 left = bytes; left > 0; left -= piece) {
        const qint64 now = std::min(left, piece);
        if (file.write(pixels.constData(), now) != now)
            return false;
    }
    return true;
}

} // namespace

double PlainWrite::seconds(const QString& folder, qint64 bytes) {
    settle(folder);
    QFile file(folder + u"/plain"_qs);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return 0;
    QElapsedTimer timer;
    timer.start();
    const bool written = writeAll(file, bytes);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    file.remove();
    return written ? seconds : 0;
}

void PlainWrite::settle(const QString& folder) {
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (descriptor < 0)
        return;
    ::syncfs(descriptor);
    ::close(descriptor);
}
