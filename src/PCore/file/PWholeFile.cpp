// SPDX-License-Identifier: MIT
#include <PCore/file/PWholeFile.h>

#include <QSaveFile>

PStatus PWholeFile::replace(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    const bool done = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                      writeAll(file, bytes) && file.commit();
    return done ? PStatus(PStatus::Ok) : PStatus::failure(file.errorString());
}

bool PWholeFile::writeAll(QFileDevice& file, const QByteArray& bytes) {
    qsizetype done = 0;
    while (done < bytes.size()) {
        // A disk that fills up first takes a part, and gives the reason only at the next attempt.
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += qsizetype(written);
    }
    return file.flush();
}
