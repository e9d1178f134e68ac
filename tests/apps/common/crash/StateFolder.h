// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// While this object exists, the user's state is in another folder. One thread.
class StateFolder {
public:
    explicit StateFolder(const QString& path) { qputenv(variable, QFile::encodeName(path)); }
    ~StateFolder() { m_before.isNull() ? qunsetenv(variable) : qputenv(variable, m_before); }
    StateFolder(const StateFolder&) = delete;
    StateFolder& operator=(const StateFolder&) = delete;

private:
    static constexpr auto variable = "XDG_STATE_HOME";
    QByteArray m_before = qgetenv(variable);
};
