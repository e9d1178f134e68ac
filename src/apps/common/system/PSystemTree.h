// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Where the operating system shows its state: /sys, /dev, /proc and /etc, or copies of them below
/// another folder. A value; any thread.
class PSystemTree {
public:
    /// The system itself, or the tree below another folder.
    explicit PSystemTree(QString root = u"/"_qs);

    /// The system itself, unless the environment variable PCD_SYSTEM_ROOT names another folder.
    static PSystemTree fromEnvironment();

    /// The path of a file or folder, given without a slash at its beginning: "proc/meminfo".
    QString path(const QString& name) const { return m_root + name; }
    /// The content of a text file, without blanks around it; empty if it cannot be read.
    QString readText(const QString& name) const;
    /// Is this the running system, and not a copy?
    bool isSystem() const { return m_root == u"/"; }

private:
    QString m_root; ///< ends in a slash
};
