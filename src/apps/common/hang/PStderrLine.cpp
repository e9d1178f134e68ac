// SPDX-License-Identifier: MIT
#include <apps/common/hang/PStderrLine.h>

#include <unistd.h>

void PStderrLine::write(const QString& line) {
    const QByteArray eraseLine = isatty(STDERR_FILENO) == 1 ? "\r\x1b[K" : "";
    const QByteArray bytes = eraseLine + line.toUtf8() + '\n';
    [[maybe_unused]] const ssize_t written =
        ::write(STDERR_FILENO, bytes.constData(), std::size_t(bytes.size()));
}
