// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashFacts.h>

#include <apps/common/crash/PCrashFolder.h>

#include <PCore/PPrintableText.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QSysInfo>

#include <unistd.h>

#include <cerrno>

namespace {

QString makeHeader(const QString& program, const QString& command, const QDateTime& now) {
    return u"%1 was ended by a fault. This report was written on this computer and sent "
           u"nowhere.\n\n"
           "Command: %2\nQt: %3\nSystem: %4, kernel %5, %6\nStarted: %7\n"_qs.arg(
               program, PPrintableText::toLine(command), QString::fromLatin1(qVersion()),
               QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
               QSysInfo::currentCpuArchitecture(), now.toString(Qt::ISODate));
}

std::vector<QByteArray> withParents(const QString& folder) {
    std::vector<QByteArray> paths;
    for (qsizetype end = folder.indexOf(u'/', 1); end > 0; end = folder.indexOf(u'/', end + 1))
        paths.push_back(QFile::encodeName(folder.left(end)));
    paths.push_back(QFile::encodeName(folder));
    return paths;
}

QString toCommand(int argc, const char* const* argv) {
    QStringList words;
    for (int i = 0; i < argc; ++i)
        words.append(QFile::decodeName(argv[i]));
    return words.join(u' ');
}

} // namespace

PCrashFacts PCrashFacts::gather(int argc, const char* const* argv, const QString& version) {
    const QString program = QFile::decodeName(::program_invocation_short_name);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QString folder = PCrashFolder::path();
    const QString name = u"%1-%2-%3.txt"_qs.arg(program, now.toString(u"yyyyMMdd-hhmmss"_qs),
                                                QString::number(::getpid()));
    PCrashFacts facts;
    facts.folders = withParents(folder);
    facts.path = QFile::encodeName(QDir(folder).filePath(name));
    facts.header = makeHeader(program + u' ' + version, toCommand(argc, argv), now).toUtf8();
    facts.started = std::time(nullptr);
    return facts;
}
