// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PStatus.h>

#include <QString>

/// A new folder that gets its name later, when its content is worth one. Until then it is hidden
/// beside that place, as ".….part", and remains so if the program is killed. One thread.
class PZarrFolder {
public:
    PZarrFolder() = default;
    /// Calls discard().
    ~PZarrFolder() { discard(); }
    PZarrFolder(const PZarrFolder&) = delete;
    PZarrFolder& operator=(const PZarrFolder&) = delete;

    /// Makes the folder. Fails with the system's reason, or if anything has that name.
    PStatus create(const QString& path);
    bool isCreated() const { return !m_now.isEmpty(); }
    /// Gives it its name, without ever replacing anything. Fails with the system's reason.
    PStatus giveName();
    /// Removes the folder, with its content, if it got no name.
    void discard();
    bool hasName() const { return isCreated() && m_now == m_path; }

    /// The path at present of a file in it.
    QString path(const QString& name) const { return m_now + u'/' + name; }

private:
    QString m_path;
    QString m_now; ///< its present path; empty before create()
};
