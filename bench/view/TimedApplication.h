// SPDX-License-Identifier: MIT
#pragma once

#include <view/Durations.h>

#include <QApplication>

/// An application that measures how long painting the camera's picture takes. The GUI thread.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;

    /// The time of each painting since the last takePaints().
    const Durations& paints() const { return m_paints; }
    Durations takePaints();

    bool notify(QObject* receiver, QEvent* event) override;

private:
    Durations m_paints;
};
