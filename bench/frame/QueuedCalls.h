// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

/// The least that Qt needs to hand something over to the main thread: a queued call that carries a
/// shared pointer. Made on the main thread.
class QueuedCalls {
public:
    explicit QueuedCalls(std::function<void()> onCall)
        : m_onCall(std::move(onCall)) {}

    /// Posts a call, from any thread.
    void post();

private:
    std::function<void()> m_onCall;
    std::shared_ptr<const int> m_payload = std::make_shared<int>(1);
    QObject m_receiver;
};
