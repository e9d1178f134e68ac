// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <vector>

/// A recording as OME-Zarr, read from its files. A value.
class ZarrReadBack {
public:
    explicit ZarrReadBack(QString folder)
        : m_folder(std::move(folder)) {}

    /// A JSON document, such as "0/.zattrs"; empty if there is none.
    QJsonObject document(const QString& name) const;
    /// The attributes of the image: the only item of "multiscales".
    QJsonObject multiscale() const;
    /// Of an array: frames, channels, height, width.
    std::vector<int> shape(int level = 0) const;
    /// The samples of a chunk; empty if it is missing or not whole.
    QByteArray chunk(int frame, int channel = 0, int level = 0) const;
    QByteArray xml() const;
    /// The lines of the table of times, its heading first.
    QStringList times() const;
    /// All names of files and folders in it that end in ".part".
    QStringList parts() const;

private:
    QByteArray bytes(const QString& name) const;

    QString m_folder;
};
