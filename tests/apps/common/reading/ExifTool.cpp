// SPDX-License-Identifier: MIT
#include <apps/common/reading/ExifTool.h>

#include <apps/common/reading/SpawnedProgram.h>

#include <support/FolderTest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

QJsonObject exifToolTags(const QString& file) {
    const QTemporaryDir folder;
    const QString output = folder.filePath(u"output"_qs);
    const QString errors = folder.filePath(u"errors"_qs);
    const QString failure = spawnFailure(
        {"exiftool", "-json", "-G1", "-n", "-warning", "-all", QFile::encodeName(file)},
        QFile::encodeName(output), QFile::encodeName(errors));
    EXPECT_TRUE(failure.isEmpty()) << "exiftool: " << failure.toStdString() << ": "
                                   << (failure.isEmpty() ? "" : readFile(errors).toStdString());
    if (!failure.isEmpty())
        return {};
    const QJsonObject tags = QJsonDocument::fromJson(readFile(output)).array().at(0).toObject();
    EXPECT_EQ(tags.value(u"ExifTool:Warning"_qs).toString().toStdString(), "");
    return tags;
}
