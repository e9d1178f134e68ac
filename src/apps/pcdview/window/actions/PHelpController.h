// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class PCameraSdk;
class PViewActions;
class QWidget;

/// Opens the help pages when their actions are triggered. The GUI thread.
class PHelpController : public QObject {
    Q_OBJECT

public:
    /// The actions and the SDK must outlive it; the window is the parent of it and of the pages.
    PHelpController(const PViewActions& actions, const PCameraSdk& sdk, QWidget* window);
};
