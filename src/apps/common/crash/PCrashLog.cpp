// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashLog.h>

#include <apps/common/crash/PCrashWriter.h>

#include <algorithm>
#include <cstring>

void PCrashLog::write(const PLogRecord& record) {
    const QByteArray text = formatLogRecord(record).toUtf8();
    const std::size_t number = m_next;
    Line& line = m_lines[number % lines];
    line.size = 0;
    const std::size_t size = std::min(std::size_t(text.size()), longestLine);
    std::memcpy(line.text.data(), text.constData(), size);
    line.size = size;
    m_next = number + 1;
}

void PCrashLog::writeTo(PCrashWriter& writer) const {
    const std::size_t next = m_next;
    for (std::size_t number = next > lines ? next - lines : 0; number < next; ++number) {
        const Line& line = m_lines[number % lines];
        const std::size_t size = line.size;
        writer.write(line.text.data(), size);
        if (size > 0)
            writer << "\n";
    }
}
