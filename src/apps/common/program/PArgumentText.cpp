// SPDX-License-Identifier: MIT
#include <apps/common/program/PArgumentText.h>

#include <PCore/PPrintableText.h>

#include <QStringDecoder>

namespace {

bool isUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    [[maybe_unused]] const QString text = decoder(bytes);
    return !decoder.hasError();
}

/// With the bytes that are not ASCII as "\xff".
QString shown(const QByteArray& bytes) {
    QString text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += code < 0x80 ? PPrintableText::toLine(QString(QLatin1Char(byte)))
                            : u"\\x"_qs + QString::number(code, 16);
    }
    return text;
}

} // namespace

PStatus PArgumentText::check(int argc, const char* const* argv) {
    for (int index = 1; index < argc; ++index) {
        if (!isUtf8(argv[index])) {
            return PStatus::failure(
                u"argument %1, \"%2\", is not UTF-8: expected text in UTF-8"_qs.arg(
                    QString::number(index), shown(argv[index])));
        }
    }
    return PStatus::Ok;
}
