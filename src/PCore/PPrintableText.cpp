// SPDX-License-Identifier: MIT
#include <PCore/PPrintableText.h>

#include <algorithm>

namespace {

/// Begins or ends a part of the text that is shown in another order.
bool isReordering(QChar c) {
    const QChar::Direction direction = c.direction();
    return (direction >= QChar::DirLRE && direction <= QChar::DirLRO) ||
           (direction >= QChar::DirRLE && direction <= QChar::DirPDF) ||
           (direction >= QChar::DirLRI && direction <= QChar::DirPDI);
}

/// Control characters, the two line breaks of Unicode, and what changes the order.
bool isUnsafe(QChar c) {
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph || isReordering(c);
}

QString toVisible(QChar c) {
    switch (c.unicode()) {
    case u'\n':
        return u"\\n"_qs;
    case u'\r':
        return u"\\r"_qs;
    case u'\t':
        return u"\\t"_qs;
    default:
        break;
    }
    const bool isByte = c.unicode() <= 0xff;
    return (isByte ? u"\\x"_qs : u"\\u"_qs) +
           QString::number(c.unicode(), 16).rightJustified(isByte ? 2 : 4, u'0');
}

QString toPrintable(const QString& text, bool isOneLine) {
    const auto changes = [isOneLine](QChar c) { return isUnsafe(c) && (isOneLine || c != u'\n'); };
    if (std::none_of(text.begin(), text.end(), changes))
        return text;
    QString result;
    for (const QChar c : text)
        result += changes(c) ? toVisible(c) : QString(c);
    return result;
}

} // namespace

QString PPrintableText::toLine(const QString& text) {
    return toPrintable(text, true);
}

QString PPrintableText::toLines(const QString& text) {
    return toPrintable(text, false);
}
