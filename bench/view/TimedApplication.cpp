// SPDX-License-Identifier: MIT
#include <view/TimedApplication.h>

#include <apps/pcdview/view/PImageView.h>

#include <QEvent>

#include <chrono>
#include <utility>

Durations TimedApplication::takePaints() {
    return std::exchange(m_paints, {});
}

bool TimedApplication::notify(QObject* receiver, QEvent* event) {
    // Only the GUI thread paints.
    if (event->type() != QEvent::Paint || qobject_cast<PImageView*>(receiver) == nullptr)
        return QApplication::notify(receiver, event);
    const auto begin = std::chrono::steady_clock::now();
    const bool isHandled = QApplication::notify(receiver, event);
    m_paints.add(std::chrono::steady_clock::now() - begin);
    return isHandled;
}
