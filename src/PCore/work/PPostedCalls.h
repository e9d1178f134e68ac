// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

/// Calls that other threads leave for the thread in which this object lives: the way back of a
/// result. They are made in their order, from the event loop; those that still wait when the object
/// is destroyed are dropped. An exception that leaves one is logged. The thread of the object,
/// unless a function says otherwise.
///
/// Who posts must have ended before the object is destroyed: a PWorkQueue whose work posts comes
/// after it among the members, or is stopped first.
class PPostedCalls : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Has this called soon. Any thread.
    void post(std::function<void()> call);
    /// Makes the calls that wait now. One of them may destroy the object; the rest is then dropped.
    void runAll();

protected:
    void customEvent(QEvent* event) override;

private:
    std::mutex m_mutex; // other threads add calls, the object's thread takes them
    std::deque<std::function<void()>> m_calls;
};
