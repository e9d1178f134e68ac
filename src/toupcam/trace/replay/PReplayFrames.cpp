// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayFrames.h>

#include <toupcam/trace/format/PTraceFrame.h>
#include <toupcam/trace/format/PTraceText.h>

#include <QFileInfo>

void PReplayFrames::open(const QString& path) {
    const std::lock_guard lock(m_mutex);
    m_file.setFileName(path);
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        m_notice = u"\"%1\" is not a file, so frames are patterns"_qs.arg(path);
    else if (!m_file.open(QIODevice::ReadOnly))
        m_notice =
            u"\"%1\" cannot be read, so frames are patterns: %2"_qs.arg(path, m_file.errorString());
}

void PReplayFrames::read(const PReplayPixels& pixels, unsigned char* data) {
    if (!readFile(pixels, data))
        PTraceFrame::fillPattern(data, pixels.bytes, pixels.checksum);
}

bool PReplayFrames::readFile(const PReplayPixels& pixels, unsigned char* data) {
    const std::lock_guard lock(m_mutex);
    if (!pixels.offset || !m_file.isOpen())
        return false;
    const auto bytes = qint64(pixels.bytes);
    const bool isRead =
        m_file.seek(*pixels.offset) && m_file.read(reinterpret_cast<char*>(data), bytes) == bytes;
    const QString expected = PTraceText::fromBits(pixels.checksum, 8);
    if (isRead && PTraceFrame::checksum(data, pixels.bytes) == expected)
        return true;
    if (m_notice.isEmpty()) {
        m_notice = u"\"%1\" does not have the frame with the checksum %2 at byte %3, so it is a "
                   "pattern"_qs.arg(m_file.fileName(), expected, QString::number(*pixels.offset));
    }
    return false;
}

void PReplayFrames::reportLost(std::size_t bytes) {
    const std::lock_guard lock(m_mutex);
    if (m_notice.isEmpty())
        m_notice = u"there is no memory for a frame of %1 bytes, which is left out"_qs.arg(bytes);
}

QString PReplayFrames::notice() const {
    const std::lock_guard lock(m_mutex);
    return m_notice;
}
