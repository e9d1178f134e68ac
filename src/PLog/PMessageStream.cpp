// SPDX-License-Identifier: MIT
#include <PLog/PMessageStream.h>

#include <PLog/PLog.h>

PMessageStream::PMessageStream(PLogRecord record)
    : m_record(std::move(record)) {
}

PMessageStream::~PMessageStream() {
    PLog::emitRecord(m_record);
}

PMessageStream& PMessageStream::operator<<(const char* text) {
    m_record.items.append(text ? QString::fromUtf8(text) : u"(null)"_qs);
    return *this;
}

PMessageStream& PMessageStream::operator<<(const QString& text) {
    m_record.items.append(text);
    return *this;
}

PMessageStream& PMessageStream::operator<<(const QByteArray& text) {
    m_record.items.append(QString::fromUtf8(text));
    return *this;
}

PMessageStream& PMessageStream::operator<<(int number) {
    m_record.items.append(QString::number(number));
    return *this;
}

PMessageStream& PMessageStream::operator<<(unsigned int number) {
    m_record.items.append(QString::number(number));
    return *this;
}

PMessageStream& PMessageStream::operator<<(bool value) {
    m_record.items.append(value ? u"true"_qs : u"false"_qs);
    return *this;
}

PMessageStream& PMessageStream::operator<<(void* pointer) {
    const auto address = reinterpret_cast<quintptr>(pointer);
    m_record.items.append(u"0x"_qs + QString::number(address, 16));
    return *this;
}
