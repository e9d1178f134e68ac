// SPDX-License-Identifier: MIT
#include <apps/pcdview/capture/PCaptureFolder.h>

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSettings>
#include <QStandardPaths>

namespace {

const QString folderKey = u"capture/folder"_qs;
const QString patternKey = u"capture/names"_qs;
const QString endingKey = u"capture/stillEnding"_qs;

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
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QSettings().value(folderKey, QDir(pictures).filePath(u"pcdview"_qs)).toString();
}

void PCaptureFolder::setPath(const QString& folder) {
    QSettings().setValue(folderKey, folder);
}

PNamePattern PCaptureFolder::pattern() {
    PNamePattern pattern;
    // People can edit the settings file: what makes no sense there leaves the usual one.
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
    for (int number = 1;; ++number) {
        const QString candidate = folder.filePath(names.name(camera, time, number) + ending);
        if (!isTaken(candidate))
            return candidate;
    }
}
