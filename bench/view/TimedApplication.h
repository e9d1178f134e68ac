// SPDX-License-Identifier: MIT
#pragma once

#include <view/Durations.h>

#include <QApplication>

/// An application that measures how long its main thread takes over its events. The GUI thread.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;

    struct Times {
        Durations paints;          ///< of the camera's picture
        Durations histogramPaints; ///< of the histogram
        double longest = 0;        ///< event, in milliseconds
        const char* receiver = ""; ///< its class
        int type = 0;              ///< QEvent::Type
    };

    /// What has been measured since the last call.
    Times takeTimes();

    bool notify(QObject* receiver, QEvent* event) override;

private:
    Durations* findPaints(QObject* receiver, const QEvent* event);

    Times m_times;
    int m_depth = 0; ///< of events that are sent while another is handled
};
