// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/property/PDeviceProperty.h>

#include <QDeadlineTimer>
#include <QThread>

#include <mutex>
#include <thread>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;
using Milliseconds = PCheckBench::Milliseconds;

constexpr quint64 framesToSee = 3; // one may have been on its way

PCheckResult examineOtherThread(PCheckBench& bench) {
    const PDevice& device = bench.device();
    const QByteArray before = device.getModel() + ' ' + device.getSerial();
    QByteArray there;
    // Not the device's thread: recorders read both where frames arrive.
    std::thread([&] { there = device.getModel() + ' ' + device.getSerial(); }).join();
    return PCheckResult::unless(
        there == before ? QString()
                        : u"on another thread they are \"%1\""_qs.arg(QString::fromLatin1(there)));
}

/// Reports the first signal of the device or its properties that is emitted on another thread.
class SignalWatch {
public:
    explicit SignalWatch(PCheckBench& bench)
        : m_thread(QThread::currentThread()) {
        PDevice* const device = &bench.device();
        const auto note = [this](const QString& name) { return [this, name] { take(name); }; };
        m_connections = {QObject::connect(device, &PDevice::imageChanged, device,
                                          note(u"imageChanged"_qs), Qt::DirectConnection),
                         QObject::connect(device, &PDevice::modeChanged, device,
                                          note(u"modeChanged"_qs), Qt::DirectConnection),
                         QObject::connect(device, &PDevice::snapshotTaken, device,
                                          note(u"snapshotTaken"_qs), Qt::DirectConnection)};
        for (PDeviceProperty* const property : bench.properties()) {
            const QString id = QString::fromLatin1(property->id());
            m_connections.append(QObject::connect(property, &PDeviceProperty::valueChanged,
                                                  property, note(u"valueChanged of "_qs + id),
                                                  Qt::DirectConnection));
            m_connections.append(QObject::connect(property, &PDeviceProperty::rangeChanged,
                                                  property, note(u"rangeChanged of "_qs + id),
                                                  Qt::DirectConnection));
        }
    }
    ~SignalWatch() {
        for (const QMetaObject::Connection& connection : m_connections)
            QObject::disconnect(connection);
    }
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    QString elsewhere() const {
        const std::lock_guard lock(m_mutex);
        return m_elsewhere;
    }

private:
    void take(const QString& name) {
        if (QThread::currentThread() == m_thread)
            return;
        const std::lock_guard lock(m_mutex);
        m_elsewhere = name;
    }

    QThread* const m_thread;
    QList<QMetaObject::Connection> m_connections;
    mutable std::mutex m_mutex; // written on threads that should not emit, read on the main thread
    QString m_elsewhere;
};

PCheckResult examineSignals(PCheckBench& bench) {
    const SignalWatch watch(bench);
    bench.waitForFrames(2);
    if (bench.device().isSupportStillCapture())
        bench.device().triggerStillCapture();
    bench.waitForFrames(2);
    bench.stopStream();
    const QString name = watch.elsewhere();
    return PCheckResult::unless(name.isEmpty() ? QString()
                                               : u"%1 was emitted on another thread"_qs.arg(name));
}

PCheckResult examineBlockedHost(PCheckBench& bench) {
    const quint64 before = bench.frames()->seen().live;
    const auto count = [&] { return bench.frames()->seen().live - before; };
    // Meanwhile the device's thread runs no events, as if the host were busy.
    const QDeadlineTimer deadline(bench.frameTimeout());
    while (count() < framesToSee && !deadline.hasExpired()) {
        bench.touch();
        std::this_thread::sleep_for(Milliseconds(5));
    }
    return PCheckResult::unless(count() >= framesToSee
                                    ? QString()
                                    : u"%1 frames arrived while the host was busy"_qs.arg(count()));
}

} // namespace

QList<PCheckRule> PCheckRules::threads() {
    return {
        {u"threads.identity"_qs,
         u"Model and serial number can be read on any thread: recorders do so where frames arrive."_qs,
         u"Return copies that were made in the constructor."_qs, Where::Once, For::Camera,
         &examineOtherThread},
        {u"threads.signals"_qs,
         u"Signals of the device and its properties are emitted on the device's thread: panels are "
         "connected to them."_qs,
         u"Post updateValueFromDevice() from the SDK's thread with a queued call."_qs,
         Where::Streaming, For::Camera, &examineSignals},
        {u"threads.frames-do-not-wait"_qs,
         u"Frames arrive while the host's main thread is busy: a recording has no gap then."_qs,
         u"Call processFrameImage() on the thread of the SDK; never wait for the main thread there."_qs,
         Where::Streaming, For::Camera, &examineBlockedHost},
    };
}
