// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

/// Calls that other threads post to this object's thread, usually to return a result. They are made
/// in order, from the event loop; those still pending when the object is destroyed are dropped. An
/// exception thrown by a call is logged. The thread of the object, unless a function says
/// otherwise.
///
/// Threads that post must have ended before the object is destroyed: declare a PWorkQueue whose
/// work posts after it, or stop the queue first.
class PCD_EXPORT PPostedCalls : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Posts a call. Any thread.
    void post(std::function<void()> call);
    /// Makes the pending calls. One of them may destroy the object; the rest are then dropped.
    void runAll();

protected:
    void customEvent(QEvent* event) override;

private:
    std::mutex m_mutex; // other threads add calls, the object's thread takes them
    std::deque<std::function<void()>> m_calls;
};
