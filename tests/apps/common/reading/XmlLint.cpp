// SPDX-License-Identifier: MIT
#include <apps/common/reading/XmlLint.h>

#include <apps/common/reading/SpawnedProgram.h>

#include <support/FolderTest.h>

#include <QFile>
#include <QTemporaryDir>

QString xmlLintComplaints(const QByteArray& xml, const QString& schema) {
    const QTemporaryDir folder;
    const QString document = folder.filePath(QStringLiteral("document.xml"));
    const QString complaints = folder.filePath(QStringLiteral("complaints"));
    writeFile(document, xml);
    const QString failure = spawnFailure({"xmllint", "--nonet", "--noout", "--schema",
                                          QFile::encodeName(schema), QFile::encodeName(document)},
                                         QFile::encodeName(folder.filePath(u"output"_qs)),
                                         QFile::encodeName(complaints));
    if (failure.isEmpty())
        return {};
    return QStringLiteral("xmllint %1: %2").arg(failure, QString::fromUtf8(readFile(complaints)));
}
