// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PStatusLine.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <unistd.h>

namespace {

constexpr qint64 intervalMs = 100;
constexpr int barWidth = 20;
constexpr const char* eraseLine = "\r\x1b[K";

} // namespace

PStatusLine::PStatusLine()
    : m_isTerminal(isatty(STDERR_FILENO) == 1) {
}

PStatusLine::~PStatusLine() {
    clear();
}

void PStatusLine::clear() {
    if (m_isShown)
        std::fputs(eraseLine, stderr);
    m_isShown = false;
}

bool PStatusLine::isDue() const {
    return m_isTerminal && (!m_sinceShown.isValid() || m_sinceShown.elapsed() >= intervalMs);
}

void PStatusLine::show(const QString& text) {
    if (!m_isTerminal)
        return;
    std::fputs((eraseLine + text.toUtf8()).constData(), stderr);
    m_isShown = true;
    m_sinceShown.start();
}

QString PStatusLine::bar(double share) {
    const int full = int(std::lround(std::clamp(share, 0.0, 1.0) * barWidth));
    return u'[' + QString(full, u'#') + QString(barWidth - full, u'-') + u']';
}
