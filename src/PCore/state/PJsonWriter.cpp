// SPDX-License-Identifier: MIT
#include <PCore/state/PJsonWriter.h>

#include <QRect>
#include <QUuid>

#include <array>
#include <charconv>

namespace {

/// Half of a surrogate pair has no UTF-8 form, but can be written as an escape.
bool isLoneSurrogate(const QString& text, qsizetype i) {
    if (text[i].isHighSurrogate())
        return i + 1 == text.size() || !text[i + 1].isLowSurrogate();
    return text[i].isLowSurrogate() && (i == 0 || !text[i - 1].isHighSurrogate());
}

QByteArray quoted(const QString& text) {
    QString escaped;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'"' || c == u'\\')
            escaped += u'\\';
        if (c < u' ' || isLoneSurrogate(text, i))
            escaped += u"\\u%1"_qs.arg(int(c.unicode()), 4, 16, QChar(u'0'));
        else
            escaped += c;
    }
    return '"' + escaped.toUtf8() + '"';
}

QByteArray typed(const char* type, const QByteArray& value) {
    return QByteArray("{\"$") + type + "\": " + value + '}';
}

/// The shortest text that is read back as the same double. (Qt's own loses the sign of a zero.)
QByteArray doubleText(double value) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), value).ptr;
    const QByteArray text(buffer.data(), end - buffer.data());
    const bool looksLikeInt = !text.contains('.') && !text.contains('e');
    return looksLikeInt ? text + ".0" : text;
}

QByteArray rectText(const QRect& rect) {
    // QRect::width() would overflow for corners that lie far apart.
    const qint64 width = qint64(rect.right()) - rect.left() + 1;
    const qint64 height = qint64(rect.bottom()) - rect.top() + 1;
    return '[' + QByteArray::number(rect.x()) + ", " + QByteArray::number(rect.y()) + ", " +
           QByteArray::number(width) + ", " + QByteArray::number(height) + ']';
}

QByteArray bytesText(const QByteArray& bytes) {
    return bytes.isNull() ? QByteArray("null") : '"' + bytes.toBase64() + '"';
}

QByteArray valueText(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? "true" : "false";
    case QMetaType::Int:
        return QByteArray::number(value.toInt());
    case QMetaType::LongLong:
        return typed("int64", '"' + QByteArray::number(value.toLongLong()) + '"');
    case QMetaType::Double:
        return doubleText(value.toDouble());
    case QMetaType::QByteArray:
        return typed("bytes", bytesText(value.toByteArray()));
    case QMetaType::QRect:
        return typed("rect", rectText(value.toRect()));
    case QMetaType::QUuid:
        return typed("uuid", quoted(value.toUuid().toString()));
    default: // text; PNameScopes lets no other type through
        return value.toString().isNull() ? typed("string", "null") : quoted(value.toString());
    }
}

void closeObject(QByteArray& text, bool isEmpty, qsizetype depth) {
    if (!isEmpty)
        text += '\n' + QByteArray(depth * 4, ' ');
    text += '}';
}

} // namespace

void PJsonWriter::startEntry(const QString& name, qsizetype depth) {
    m_text += m_objectIsEmpty ? "\n" : ",\n";
    m_objectIsEmpty = false;
    const bool looksLikeType = name.startsWith(u'$');
    m_text += QByteArray(depth * 4, ' ') + quoted(looksLikeType ? u'$' + name : name) + ": ";
}

void PJsonWriter::beginObject(const QString& name) {
    if (!m_scopes.enter(name))
        return;
    startEntry(name, m_scopes.depth());
    m_text += '{';
    m_objectIsEmpty = true;
}

void PJsonWriter::endObject() {
    if (!m_scopes.leave())
        return;
    closeObject(m_text, m_objectIsEmpty, m_scopes.depth() + 1);
    m_objectIsEmpty = false;
}

bool PJsonWriter::writeValue(const QString& name, const QVariant& value) {
    if (!m_scopes.addValue(name, value))
        return false;
    startEntry(name, m_scopes.depth() + 1);
    m_text += valueText(value);
    return true;
}

QByteArray PJsonWriter::document() const {
    QByteArray text = m_text;
    bool isEmpty = m_objectIsEmpty;
    for (qsizetype depth = m_scopes.depth(); depth >= 0; --depth) {
        closeObject(text, isEmpty, depth);
        isEmpty = false;
    }
    return text + '\n';
}
