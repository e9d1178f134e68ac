// SPDX-License-Identifier: MIT
#include <PCore/state/PJsonReader.h>

#include <PCore/state/PNameScopes.h>
#include <PCore/state/PReadFault.h>
#include <PCore/state/PValueTree.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QRect>
#include <QUuid>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

namespace {

constexpr qsizetype largestDocument = qsizetype(64) << 20;

std::optional<int> toInt(double number) {
    using Limits = std::numeric_limits<int>;
    if (number < Limits::min() || number > Limits::max() || std::trunc(number) != number)
        return std::nullopt;
    return int(number);
}

QVariant rectFrom(const QJsonArray& parts) {
    if (parts.size() != 4)
        return {};
    const double x = parts[0].toDouble(NAN), y = parts[1].toDouble(NAN);
    // QRect stores corners, so a width may be one more than an int holds.
    const auto left = toInt(x), top = toInt(y);
    const auto right = toInt(x + parts[2].toDouble(NAN) - 1);
    const auto bottom = toInt(y + parts[3].toDouble(NAN) - 1);
    if (!left || !top || !right || !bottom)
        return {};
    return QRect(QPoint(*left, *top), QPoint(*right, *bottom));
}

QVariant bytesFrom(const QJsonValue& value) {
    if (value.isNull())
        return QByteArray();
    const auto decoded = QByteArray::fromBase64Encoding(value.toString().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!value.isString() || !decoded)
        return {};
    return (*decoded).isNull() ? QByteArray("") : *decoded;
}

QVariant uuidFrom(const QString& text) {
    const QUuid id(text);
    return id.toString() == text ? QVariant(id) : QVariant();
}

QVariant int64From(const QString& text) {
    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    return ok ? QVariant(number) : QVariant();
}

/// The value of {"$type": value}; invalid if the type does not exist or the value does not have it.
QVariant typedValue(const QString& type, const QJsonValue& value) {
    if (type == u"$int64")
        return int64From(value.toString());
    if (type == u"$bytes")
        return bytesFrom(value);
    if (type == u"$rect")
        return rectFrom(value.toArray());
    if (type == u"$uuid")
        return uuidFrom(value.toString());
    if (type == u"$string" && value.isNull())
        return QString();
    return {};
}

bool isTypeName(const QString& name) {
    return name.startsWith(u'$') && !name.startsWith(u"$$");
}

/// Scans a text that Qt's parser has accepted as JSON, for what that parser does not keep: order,
/// lines, repeated names, and the spelling of numbers. So brackets match and tokens are complete.
class Walker {
public:
    explicit Walker(const QByteArray& json)
        : m_json(json) {}

    PValueTree::Object document() {
        skipSpace();
        return object(0);
    }

private:
    void skipSpace() {
        while (m_pos < m_json.size() && std::strchr(" \t\r\n", m_json[m_pos]))
            ++m_pos;
    }

    /// Skips a bracket, colon or comma and the blanks that follow it.
    void skipMark() {
        ++m_pos;
        skipSpace();
    }

    /// Reads the string that starts here, including its quotes.
    QByteArray stringToken() {
        const qsizetype start = m_pos++;
        for (; m_json[m_pos] != '"'; ++m_pos) {
            if (static_cast<unsigned char>(m_json[m_pos]) < ' ')
                throw PReadFault{m_pos, u"a control character inside a string"_qs};
            if (m_json[m_pos] == '\\')
                ++m_pos;
        }
        ++m_pos;
        return m_json.mid(start, m_pos - start);
    }

    /// Reads the value that starts here, of any type.
    QByteArray valueToken() {
        const qsizetype start = m_pos;
        int depth = 0;
        do {
            const char c = m_json[m_pos];
            if (c == '"') {
                stringToken();
                continue;
            }
            depth += int(c == '[' || c == '{') - int(c == ']' || c == '}');
            ++m_pos;
        } while (depth > 0 || !std::strchr(",]} \t\r\n", m_json[m_pos]));
        return m_json.mid(start, m_pos - start);
    }

    static QJsonValue decoded(QByteArray token) {
        // Qt's parser drops a byte order mark at the start of a string, but keeps an escaped one.
        if (token.startsWith("\"\xEF\xBB\xBF"))
            token.replace(1, 3, "\\ufeff");
        return QJsonDocument::fromJson('[' + token + ']').array().at(0);
    }

    QString name() {
        const QByteArray token = stringToken();
        skipSpace();
        return decoded(token).toString();
    }

    QVariant number(const QByteArray& token, qsizetype start) const {
        bool ok = false;
        const bool isInt = !token.contains('.') && !token.contains('e') && !token.contains('E');
        const QVariant value = isInt ? QVariant(token.toInt(&ok)) : QVariant(token.toDouble(&ok));
        if (!ok)
            throw PReadFault{
                start, u"the number %1 is out of range (an int of 32 bits or "
                       "a finite double was expected)"_qs.arg(QString::fromLatin1(token.left(40)))};
        return value;
    }

    QVariant plainValue() {
        const qsizetype start = m_pos;
        const QByteArray token = valueToken();
        const QJsonValue value = decoded(token);
        if (value.isDouble())
            return number(token, start);
        if (value.isArray() || value.isNull())
            throw PReadFault{start, u"%1 is not a value that can be read here"_qs.arg(
                                        value.isNull() ? u"null" : u"an array")};
        return value.toVariant();
    }

    /// After the name in {"$type": value}.
    QVariant typed(const QString& type, qsizetype start) {
        skipMark();
        const QVariant value = typedValue(type, decoded(valueToken()));
        skipSpace();
        if (!value.isValid() || m_json[m_pos] != '}')
            throw PReadFault{start, u"not a value of a known type: \"%1\""_qs.arg(type)};
        skipMark();
        return value;
    }

    /// At an opening bracket: reads its content as a typed value or as an object.
    void nested(PValueTree::Entry& entry, qsizetype depth) {
        const qsizetype start = m_pos;
        skipMark();
        const bool hasName = m_json[m_pos] == '"';
        if (const QString type = hasName ? name() : QString(); isTypeName(type)) {
            entry.value = typed(type, start);
            return;
        }
        m_pos = start;
        entry.object = std::make_unique<PValueTree::Object>(object(depth + 1));
    }

    void entry(PValueTree::Object& object, qsizetype depth) {
        const qsizetype start = m_pos;
        QString entryName = name();
        if (isTypeName(entryName))
            throw PReadFault{start, u"the type \"%1\" among other names"_qs.arg(entryName)};
        if (entryName.startsWith(u'$'))
            entryName.remove(0, 1);
        PValueTree::Entry* added = object.add(entryName, lineAt(start));
        if (!added)
            throw PReadFault{start, u"the name \"%1\" twice"_qs.arg(entryName)};
        skipMark();
        if (m_json[m_pos] == '{')
            nested(*added, depth);
        else
            added->value = plainValue();
        skipSpace();
    }

    PValueTree::Object object(qsizetype depth) {
        if (depth > PNameScopes::maxDepth)
            throw PReadFault{m_pos,
                             u"objects nested more than %1 deep"_qs.arg(PNameScopes::maxDepth)};
        PValueTree::Object result;
        for (skipMark(); m_json[m_pos] != '}'; skipComma())
            entry(result, depth);
        skipMark();
        return result;
    }

    void skipComma() {
        if (m_json[m_pos] == ',')
            skipMark();
    }

    /// Offsets are queried in rising order, so lines are counted in one pass.
    qsizetype lineAt(qsizetype offset) {
        m_line += std::count(m_json.begin() + m_counted, m_json.begin() + offset, '\n');
        m_counted = offset;
        return m_line;
    }

    const QByteArray& m_json;
    qsizetype m_pos = 0;
    qsizetype m_counted = 0;
    qsizetype m_line = 1;
};

PStatus failureAt(const QByteArray& json, qsizetype offset, const QString& what) {
    const qsizetype line = 1 + json.left(offset).count('\n');
    return PStatus::failure(u"line %1: %2"_qs.arg(QString::number(line), what));
}

/// The error of Qt's parser, or Ok.
PStatus checked(const QByteArray& json) {
    if (json.size() > largestDocument)
        return failureAt(json, 0, u"larger than 64 MiB"_qs);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        return failureAt(json, error.offset, u"not JSON: %1"_qs.arg(error.errorString()));
    }
    if (!document.isObject())
        return failureAt(json, 0, u"an array where an object was expected"_qs);
    return PStatus::Ok;
}

} // namespace

class PJsonReader::Private {
public:
    PValueTree tree;
};

PJsonReader::PJsonReader()
    : d(std::make_unique<Private>()) {
}

PJsonReader::~PJsonReader() = default;

PStatus PJsonReader::setDocument(const QByteArray& json) {
    d->tree.setRoot({});
    // Without a UTF-8 byte order mark. Qt's parser would skip a second one, the walker not.
    const QByteArray mark = QByteArrayLiteral("\xEF\xBB\xBF");
    const QByteArray text = json.startsWith(mark) ? json.mid(mark.size()) : json;
    if (text.startsWith(mark))
        return failureAt(text, 0, u"a second byte order mark"_qs);
    if (const PStatus status = checked(text); !status.isOk())
        return status;
    try {
        d->tree.setRoot(Walker(text).document());
    } catch (const PReadFault& fault) {
        return failureAt(text, fault.offset, fault.what);
    }
    return PStatus::Ok;
}

bool PJsonReader::beginObject(const QString& name) {
    return d->tree.enter(name);
}

void PJsonReader::endObject() {
    d->tree.leave();
}

QStringList PJsonReader::objectNames() const {
    return d->tree.current().names(true);
}

QStringList PJsonReader::valueNames() const {
    return d->tree.current().names(false);
}

QVariant PJsonReader::readValue(const QString& name) const {
    return d->tree.value(name);
}

QString PJsonReader::position(const QString& name) const {
    const PValueTree::Entry* entry = d->tree.current().find(name);
    return entry ? u"line %1"_qs.arg(entry->position) : QString();
}
