// SPDX-License-Identifier: MIT
#include <view/TimedApplication.h>

#include <apps/pcdview/analysis/PHistogramWidget.h>
#include <apps/pcdview/view/PImageView.h>

#include <QEvent>
#include <QThread>

#include <chrono>
#include <utility>

using Clock = std::chrono::steady_clock;

TimedApplication::Times TimedApplication::takeTimes() {
    return std::exchange(m_times, {});
}

bool TimedApplication::notify(QObject* receiver, QEvent* event) {
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    // Now: the handler may delete either.
    const char* const name = receiver->metaObject()->className();
    const int type = event->type();
    Durations* const paints = findPaints(receiver, event);
    const Clock::time_point begin = Clock::now();
    ++m_depth;
    const bool handled = QApplication::notify(receiver, event);
    --m_depth;
    const auto taken = Clock::now() - begin;
    if (paints != nullptr)
        paints->add(taken);
    const double milliseconds = std::chrono::duration<double, std::milli>(taken).count();
    if (m_depth == 0 && milliseconds > m_times.longest) {
        m_times.longest = milliseconds;
        m_times.receiver = name;
        m_times.type = type;
    }
    return handled;
}

Durations* TimedApplication::findPaints(QObject* receiver, const QEvent* event) {
    if (event->type() != QEvent::Paint)
        return nullptr;
    if (qobject_cast<PImageView*>(receiver) != nullptr)
        return &m_times.paints;
    return qobject_cast<PHistogramWidget*>(receiver) != nullptr ? &m_times.histogramPaints
                                                                : nullptr;
}
