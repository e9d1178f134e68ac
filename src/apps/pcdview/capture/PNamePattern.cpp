// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PNamePattern.h>

#include <QRegularExpression>

namespace {

const QString cameraMark = u"{camera}"_qs;
const QString dateMark = u"{date}"_qs;
const QString timeMark = u"{time}"_qs;
const QString numberMark = u"{n}"_qs;

constexpr qsizetype longestText = 100; // file systems allow 255 bytes, and placeholders grow

/// The text as a name that is valid on every file system.
QString asFileName(QString text) {
    static const QRegularExpression unusual(u"[^A-Za-z0-9._-]+"_qs);
    return text.replace(unusual, u"_"_qs);
}

/// The first text in braces that is not a placeholder; empty if there is none.
QString unknownMark(const QString& text) {
    QString rest = text;
    for (const QString& mark : {cameraMark, dateMark, timeMark, numberMark})
        rest.remove(mark);
    static const QRegularExpression braces(u"\\{[^}]*\\}?|\\}"_qs);
    return braces.match(rest).captured();
}

/// The first character that some system does not allow in a file name; empty if there is none.
QString badCharacter(const QString& text) {
    static const QRegularExpression bad(u"[/\\\\:*?\"<>|#\\x00-\\x1f]"_qs);
    return bad.match(text).captured();
}

} // namespace

PNamePattern::PNamePattern()
    : m_text(cameraMark + u'_' + dateMark + u'_' + timeMark) {
}

PStatus PNamePattern::setText(const QString& text) {
    if (text.trimmed().isEmpty() || text.startsWith(u'.'))
        return PStatus::failure(
            tr("\"%1\" is not a file name: expected a name that does not begin with a dot")
                .arg(text));
    if (text.toUtf8().size() > longestText)
        return PStatus::failure(
            tr("the name is too long: expected up to %1 bytes").arg(longestText));
    if (const QString bad = badCharacter(text); !bad.isEmpty())
        return PStatus::failure(tr("a file name cannot contain \"%1\"").arg(bad));
    if (const QString mark = unknownMark(text); !mark.isEmpty()) {
        return PStatus::failure(
            tr("\"%1\" is not a placeholder: expected {camera}, {date}, {time} or {n}").arg(mark));
    }
    m_text = text;
    return PStatus::Ok;
}

QString PNamePattern::name(const QString& camera, const QDateTime& time, int number) const {
    QString name = m_text;
    if (number > 1 && !name.contains(numberMark))
        name += u'_' + numberMark;
    return name.replace(cameraMark, asFileName(camera))
        .replace(dateMark, time.toString(u"yyyy-MM-dd"_qs))
        .replace(timeMark, time.toString(u"HH-mm-ss-zzz"_qs))
        .replace(numberMark, QString::number(number));
}
