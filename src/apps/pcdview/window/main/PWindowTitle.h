// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

class PViewCamera;

/// The title of the window. The GUI thread.
class PWindowTitle {
    Q_DECLARE_TR_FUNCTIONS(PWindowTitle)

public:
    /// The camera's id, whether it is simulated or unplugged, and the program's name; null: the
    /// program's name alone.
    static QString toText(const PViewCamera* camera);
};
