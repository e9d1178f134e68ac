// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QThread>

#include <future>

/// An exposure that is written with each frame. The writer's thread blocks in reading it until the
/// gate opens: until then frames wait.
struct FakeGatedExposure {
    Q_GADGET
    Q_PROPERTY(double exp READ exp)

public:
    double exp() const {
        if (gate.valid() && QThread::currentThread() != QCoreApplication::instance()->thread())
            gate.wait();
        return 5;
    }

    std::shared_future<void> gate;
};
