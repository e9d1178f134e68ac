// SPDX-License-Identifier: MIT
#include <apps/common/reading/XmlLint.h>

#include <apps/common/reading/SpawnedProgram.h>

#include <support/FolderTest.h>

#include <QFile>
#include <QTemporaryDir>

QString xmlLintComplaints(const QByteArray& xml, const QString& schema) {
    const QTemporaryDir folder;
    const QString document = folder.filePath(u"document.xml"_qs);
    const QString complaints = folder.filePath(u"complaints"_qs);
    writeFile(document, xml);
    const QString failure = spawnFailure({"xmllint", "--nonet", "--noout", "--schema",
                                          QFile::encodeName(schema), QFile::encodeName(document)},
                                         QFile::encodeName(folder.filePath(u"output"_qs)),
                                         QFile::encodeName(complaints));
    if (failure.isEmpty())
        return {};
    return u"xmllint %1: %2"_qs.arg(failure, QString::fromUtf8(readFile(complaints)));
}
