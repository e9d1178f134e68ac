// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QEvent>

#include <cstdio>
#include <functional>
#include <utility>

/// An application that writes a line to the standard output once a widget of interest has been
/// painted. The GUI thread.
class FirstPaint : public QApplication {
public:
    /// `isIt` chooses the widget.
    FirstPaint(int& argc, char** argv, std::function<bool(const QObject* widget)> isIt)
        : QApplication(argc, argv)
        , m_isIt(std::move(isIt)) {}

    bool notify(QObject* receiver, QEvent* event) override {
        // Before the event, which may delete the receiver.
        const bool isPaint = event->type() == QEvent::Paint && receiver->isWidgetType();
        const bool isHandled = QApplication::notify(receiver, event);
        if (isPaint && m_isIt(receiver)) {
            std::puts("painted");
            std::fflush(stdout);
        }
        return isHandled;
    }

private:
    const std::function<bool(const QObject*)> m_isIt;
};
