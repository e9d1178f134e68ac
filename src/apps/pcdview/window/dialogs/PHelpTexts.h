// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QList>
#include <QString>

class PCameraSdk;
class QAction;

/// The texts of the help pages, as HTML. The GUI thread.
class PHelpTexts {
    Q_DECLARE_TR_FUNCTIONS(PHelpTexts)

public:
    /// What the mouse does, and the keys of these actions.
    static QString keysAndMouse(const QList<QAction*>& actions);
    /// Versions, and which camera library is in use.
    static QString about(const PCameraSdk& sdk);
};
