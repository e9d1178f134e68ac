// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PReportPrivacy.h>

#include <QDir>
#include <QRegularExpression>
#include <QSysInfo>

#include <pwd.h>
#include <unistd.h>

namespace {

const QString userMark = u"<user>"_qs;

/// Replaces whole words and names only: a folder "/home/an" is not the beginning of "/home/anna".
void replaceName(QString& text, const QString& name, const QString& by) {
    const QRegularExpression whole(
        u"(?<![\\w-])%1(?![\\w-])"_qs.arg(QRegularExpression::escape(name)),
        QRegularExpression::UseUnicodePropertiesOption);
    text.replace(whole, by);
}

QString userName() {
    const passwd* const entry = ::getpwuid(::geteuid());
    return entry == nullptr ? qEnvironmentVariable("USER") : QString::fromLocal8Bit(entry->pw_name);
}

} // namespace

PReportPrivacy::PReportPrivacy(const QString& home, const QString& user, const QString& computer)
    : m_homes{QDir::cleanPath(home), QFileInfo(home).canonicalFilePath()} {
    m_homes.removeDuplicates();
    // A home that is the root folder would turn every slash into a mark.
    m_homes.removeIf([](const QString& path) { return path.size() < 2; });
    // These are nobody's names, but words of many messages.
    if (user != u"root")
        m_user = user;
    if (computer != u"localhost")
        m_computers = QStringList{computer, computer.section(u'.', 0, 0)};
    m_computers.removeAll(QString());
}

PReportPrivacy PReportPrivacy::ofThisSystem() {
    return {QDir::homePath(), userName(), QSysInfo::machineHostName()};
}

QString PReportPrivacy::apply(QString text) const {
    for (const QString& home : m_homes)
        replaceName(text, home, u"~"_qs);
    static const QRegularExpression otherHome(u"/home/[^/\\s\":,;]+"_qs);
    text.replace(otherHome, u"/home/"_qs + userMark);
    for (const QString& computer : m_computers)
        replaceName(text, computer, u"<computer>"_qs);
    if (!m_user.isEmpty())
        replaceName(text, m_user, userMark);
    return text;
}
