// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QWidget;

/// Keeps the wheel from changing settings while a page of them is scrolled: sliders, fields and
/// combo boxes take it only where the focus is. The GUI thread.
class PWheelGuard : public QObject {
    Q_OBJECT

public:
    /// Guards all controls inside the page, which owns the guard.
    explicit PWheelGuard(QWidget* page);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
