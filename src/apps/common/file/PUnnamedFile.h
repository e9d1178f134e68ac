// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// Makes a new file that gets its name later, when its content is worth one: if the program is
/// killed before, no file remains. File systems without unnamed files have a hidden one in the same
/// folder until then, ".….part", which remains in that case. One thread.
class PUnnamedFile {
public:
    /// How the file exists before it has its name.
    enum class Before {
        Unnamed, ///< as a file without a name, where there are such files
        Hidden,  ///< as a file with another name, which every file system has
    };

    PUnnamedFile() = default;
    /// Removes a hidden file that got no name.
    ~PUnnamedFile();
    PUnnamedFile(const PUnnamedFile&) = delete;
    PUnnamedFile& operator=(const PUnnamedFile&) = delete;

    /// Opens a new file for reading and writing. Returns its descriptor, which the caller closes,
    /// or -1 with the reason in errno: EEXIST if anything has the name, even a link that leads
    /// nowhere.
    int create(const QString& path, Before before = Before::Unnamed);
    /// Gives the file of this descriptor its name. Returns 0, or the errno of the failure: EEXIST
    /// if anything has got the name meanwhile.
    int giveName(int descriptor);
    bool hasName() const { return m_hasName; }

private:
    QString m_path;
    QString m_hidden; ///< its present name; empty if it has its own or none
    bool m_hasName = false;
};
