// SPDX-License-Identifier: MIT
#include <apps/common/system/PUsbId.h>

#include <QRegularExpression>

namespace {

QString fourDigits(quint16 number) {
    return u"%1"_qs.arg(number, 4, 16, QChar(u'0'));
}

} // namespace

std::optional<PUsbId> PUsbId::parse(const QString& text) {
    static const QRegularExpression form(u"\\A([0-9a-fA-F]{4}):([0-9a-fA-F]{4})\\z"_qs);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    return PUsbId{match.captured(1).toUShort(nullptr, 16), match.captured(2).toUShort(nullptr, 16)};
}

QString PUsbId::toText() const {
    return vendorText() + u':' + productText();
}

QString PUsbId::vendorText() const {
    return fourDigits(vendor);
}

QString PUsbId::productText() const {
    return fourDigits(product);
}
