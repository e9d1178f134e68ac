// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Writes a file, replacing what was there; throws if that fails.
void writeFile(const QString& path, const QByteArray& bytes);
/// The content of a file; empty if it cannot be read.
QByteArray readFile(const QString& path);

/// The colours in the middles of the three patches of a picture and at its corner, as names:
/// "red green blue black" for the patches source through a faithful camera.
QString patchColours(const QImage& picture);

/// A process's files may not grow beyond this; writing on fails instead of ending the process. For
/// CtlProcess::with().
void limitFileSize(unsigned long bytes);

/// A test with a folder of its own.
class CtlFolderTest : public testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};
