// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <QByteArray>
#include <QJsonValue>

#include <optional>

/// The forms of single values in a trace. Any thread.
namespace PTraceText {

/// A text of the SDK, at most `maximum` bytes of it: as text if it is UTF-8, else its bytes as
/// {"hex": "…"}; null for a null pointer.
QJsonValue fromText(const char* text, std::size_t maximum);
/// The bytes that fromText() wrote; nothing if it is neither form.
std::optional<QByteArray> toText(const QJsonValue& value);

/// Bits as hexadecimal text of this many digits: "0x80004005".
QString fromBits(quint64 bits, int digits);
/// What fromBits() wrote; nothing if it is anything else, or has more digits.
std::optional<quint64> toBits(const QJsonValue& value, int digits);

/// The result of a call: eight digits.
QJsonValue fromResult(HRESULT result);
std::optional<HRESULT> toResult(const QJsonValue& value);

/// The name of a handle: "h1"; null for 0.
QJsonValue fromHandle(int number);
/// The number in the name of a handle, 0 for null; nothing if it is neither.
std::optional<int> toHandle(const QJsonValue& value);

} // namespace PTraceText
