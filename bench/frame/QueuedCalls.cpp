// SPDX-License-Identifier: MIT
#include <frame/QueuedCalls.h>

#include <benchmark/benchmark.h>

void QueuedCalls::post() {
    // From the sender's thread to the main thread: this hop is what is measured.
    QMetaObject::invokeMethod(
        &m_receiver,
        [this, payload = m_payload] {
            benchmark::DoNotOptimize(payload.get());
            m_onCall();
        },
        Qt::QueuedConnection);
}
