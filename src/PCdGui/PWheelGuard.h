// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QObject>

class QWidget;

/// Keeps the wheel from changing settings while a page of them is scrolled: sliders, fields and
/// combo boxes accept it only while they have the focus. The GUI thread.
class PCD_EXPORT PWheelGuard : public QObject {
    Q_OBJECT

public:
    /// Guards all controls that are inside the page now; the page owns the guard.
    explicit PWheelGuard(QWidget* page);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
