// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPngText.h>

#include <algorithm>

namespace {

constexpr qsizetype longestKey = 79;     // PNG specification, 11.3.4.2
constexpr qsizetype compressedFrom = 40; // characters; in shorter text there is nothing to gain

/// True if a field in Latin-1 may have this character (PNG specification, 11.3.4.3).
bool isLatin(QChar character) {
    const ushort code = character.unicode();
    return code == u'\n' || (code >= 0x20 && code <= 0x7E) || (code >= 0xA0 && code <= 0xFF);
}

} // namespace

PPngText::PPngText(const PPictureMetadata& notes) {
    for (const auto& [key, text] : notes)
        m_fields.push_back(makeField(key, text));
    for (Field& field : m_fields) {
        png_text reference{};
        reference.compression = field.kind;
        reference.key = field.key.data();
        reference.text = field.text.data();
        m_references.push_back(reference);
    }
}

PPngText::Field PPngText::makeField(const QString& key, const QString& text) {
    const QByteArray latinKey = key.left(longestKey).toLatin1();
    if (!std::all_of(text.begin(), text.end(), isLatin))
        return {latinKey, text.toUtf8(), PNG_ITXT_COMPRESSION_NONE};
    const bool isLong = text.size() >= compressedFrom;
    return {latinKey, text.toLatin1(),
            isLong ? PNG_TEXT_COMPRESSION_zTXt : PNG_TEXT_COMPRESSION_NONE};
}

void PPngText::setIn(png_structp png, png_infop info) {
    png_set_text(png, info, m_references.data(), int(m_references.size()));
}
