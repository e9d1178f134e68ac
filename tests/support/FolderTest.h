// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Writes or replaces a file; throws if that fails.
void writeFile(const QString& path, const QByteArray& bytes);
/// The content of a file; empty if it cannot be read.
QByteArray readFile(const QString& path);

/// A test with its own temporary folder.
class FolderTest : public testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};
