// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PCaptureFolder.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QSettings>
#include <QStandardPaths>

namespace {

const QString folderKey = u"capture/folder"_qs;
const QString patternKey = u"capture/names"_qs;
const QString endingKey = u"capture/stillEnding"_qs;

/// The highest number used so far with otherwise equal names, so that a folder of thousands of
/// pictures is not searched again for each picture.
QHash<QString, int>& lastNumbers() {
    static QHash<QString, int> numbers;
    return numbers;
}

QSet<QString>& givenOut() {
    static QSet<QString> paths;
    return paths;
}

bool isTaken(const QString& path) {
    const QFileInfo file(path);
    return givenOut().contains(path) || file.exists() || file.isSymLink();
}

} // namespace

QString PCaptureFolder::path() {
    const QString chosen = QSettings().value(folderKey).toString();
    if (QDir::isAbsolutePath(chosen)) // users can edit the settings file
        return chosen;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QDir(pictures).filePath(u"pcdview"_qs);
}

void PCaptureFolder::setPath(const QString& folder) {
    QSettings().setValue(folderKey, folder);
}

PNamePattern PCaptureFolder::pattern() {
    PNamePattern pattern;
    // Users can edit the settings file: an invalid value there selects the default.
    if (const QString text = QSettings().value(patternKey).toString(); !text.isEmpty())
        pattern.setText(text);
    return pattern;
}

void PCaptureFolder::setPattern(const PNamePattern& pattern) {
    QSettings().setValue(patternKey, pattern.text());
}

QString PCaptureFolder::stillEnding() {
    return QSettings().value(endingKey).toString() == u".tif"_qs ? u".tif"_qs : u".png"_qs;
}

void PCaptureFolder::setStillEnding(const QString& ending) {
    QSettings().setValue(endingKey, ending);
}

QString PCaptureFolder::newPath(const QString& camera, const QDateTime& time,
                                const QString& ending) {
    const QString path = nextPath(camera, time, ending);
    givenOut().insert(path);
    return path;
}

QString PCaptureFolder::nextPath(const QString& camera, const QDateTime& time,
                                 const QString& ending) {
    const QDir folder(path());
    const PNamePattern names = pattern();
    const auto numberedPath = [&](int number) {
        return folder.filePath(names.name(camera, time, number) + ending);
    };
    const QString family = numberedPath(0);
    int number = lastNumbers().value(family, 0) + 1;
    while (isTaken(numberedPath(number)))
        ++number;
    if (number > 2) // with a time, names are unique, and nothing need be remembered
        lastNumbers().insert(family, number - 1);
    return numberedPath(number);
}
