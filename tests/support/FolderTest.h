// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Writes a file, replacing what was there; throws if that fails.
void writeFile(const QString& path, const QByteArray& bytes);
/// The content of a file; empty if it cannot be read.
QByteArray readFile(const QString& path);

/// A test with a folder of its own.
class FolderTest : public testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};
