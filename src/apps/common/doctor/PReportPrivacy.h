// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Leaves out of a text what is private: names of users and of the computer, and the paths of home
/// folders. A value; any thread.
class PReportPrivacy {
public:
    /// What to leave out: the home folder, which becomes "~", the user's name, the computer's name.
    PReportPrivacy(const QString& home, const QString& user, const QString& computer);

    /// Of this user and this computer.
    static PReportPrivacy ofThisSystem();

    /// The text without them. Home folders of other users become "/home/<user>".
    QString apply(QString text) const;

private:
    QStringList m_homes;
    QString m_user;
    QStringList m_computers;
};
