// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceText.h>

#include <QJsonObject>

#include <cstring>

namespace {

constexpr int resultDigits = 8;

/// The bytes that a text of pairs of hexadecimal digits stands for.
std::optional<QByteArray> fromHex(const QString& digits) {
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1());
    return QString::fromLatin1(bytes.toHex()) == digits ? std::optional(bytes) : std::nullopt;
}

} // namespace

QJsonValue PTraceText::fromText(const char* text, std::size_t maximum) {
    if (text == nullptr)
        return QJsonValue::Null;
    const QByteArray bytes(text, qsizetype(strnlen(text, maximum)));
    const QString decoded = QString::fromUtf8(bytes);
    if (decoded.toUtf8() == bytes)
        return decoded;
    return QJsonObject{{u"hex"_qs, QString::fromLatin1(bytes.toHex())}};
}

std::optional<QByteArray> PTraceText::toText(const QJsonValue& value) {
    if (value.isString())
        return value.toString().toUtf8();
    const QJsonValue hex = value.toObject().value(u"hex"_qs);
    return hex.isString() ? fromHex(hex.toString()) : std::nullopt;
}

QString PTraceText::fromBits(quint64 bits, int digits) {
    return u"0x%1"_qs.arg(bits, digits, 16, QChar(u'0'));
}

std::optional<quint64> PTraceText::toBits(const QJsonValue& value, int digits) {
    const QString text = value.toString();
    bool isNumber = false;
    const quint64 bits = text.mid(2).toULongLong(&isNumber, 16);
    // Signs, blanks and digits too many would not come back as they are.
    return isNumber && fromBits(bits, digits) == text && text.size() == digits + 2
               ? std::optional(bits)
               : std::nullopt;
}

QJsonValue PTraceText::fromResult(HRESULT result) {
    return fromBits(unsigned(result), resultDigits);
}

std::optional<HRESULT> PTraceText::toResult(const QJsonValue& value) {
    const std::optional<quint64> bits = toBits(value, resultDigits);
    return bits ? std::optional(HRESULT(unsigned(*bits))) : std::nullopt;
}

QJsonValue PTraceText::fromHandle(int number) {
    return number == 0 ? QJsonValue(QJsonValue::Null) : u"h%1"_qs.arg(number);
}

std::optional<int> PTraceText::toHandle(const QJsonValue& value) {
    if (value.isNull())
        return 0;
    bool isNumber = false;
    const int number = value.toString().mid(1).toInt(&isNumber);
    return isNumber && number > 0 && fromHandle(number) == value ? std::optional(number)
                                                                 : std::nullopt;
}
