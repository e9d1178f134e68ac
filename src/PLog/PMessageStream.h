// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogRecord.h>

#include <PCore/PExport.h>

#include <QByteArray>

/// One log record being written: items are appended, and the record is emitted when the object is
/// destroyed at the end of the statement. Created by PLog::logStream. Any thread; not shared
/// between threads.
class PCD_EXPORT PMessageStream {
public:
    explicit PMessageStream(PLogRecord record);
    ~PMessageStream();
    PMessageStream(const PMessageStream&) = delete;
    PMessageStream& operator=(const PMessageStream&) = delete;

    /// Appends one item: text as it is (bytes read as UTF-8, a null pointer as "(null)"), numbers
    /// in decimal, bool as true or false, a pointer as 0x and lower-case hexadecimal digits.
    PMessageStream& operator<<(const char* text);
    PMessageStream& operator<<(const QString& text);
    PMessageStream& operator<<(const QByteArray& text);
    PMessageStream& operator<<(int number);
    PMessageStream& operator<<(unsigned int number);
    PMessageStream& operator<<(bool value);
    PMessageStream& operator<<(void* pointer);

private:
    PLogRecord m_record;
};
