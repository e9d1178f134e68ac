// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/device/PDeviceManager.h>

#include <QObject>
#include <QPointer>

#include <atomic>
#include <memory>
#include <mutex>
#include <random>

class PDevice;
class QWidget;

/// A program in a race: random actions of its main thread on the camera, and those that other
/// threads may do with a device meanwhile. The main thread, unless a function says otherwise.
class RaceHost : public QObject {
public:
    explicit RaceHost(std::uint64_t seed);
    /// Ends the program: the register is unloaded.
    ~RaceHost() override;

    /// One action that the seed selects.
    void act();
    /// One action on the present device, if there is one, that any thread may do. Any thread.
    void useFromAnyThread(std::mt19937& random);

    /// False once a ledger did not balance. Any thread.
    bool areLedgersBalanced() const { return m_areBalanced; }

private:
    void load();
    void unload();
    void onDeviceAdded(PDevice* device);
    void onDeviceRemoved(PDevice* device);
    /// The device that other threads may use; when it returns, none uses the one before.
    void share(PDevice* device);
    void actOnCamera(PDevice* device);
    void changeSomething(PDevice* device);
    void togglePanel(PDevice* device);
    void togglePull(PDevice* device);
    void destroy(PDevice* device);
    unsigned draw(unsigned below) { return unsigned(m_random() % below); }

    std::mt19937 m_random;
    std::unique_ptr<PDeviceManager> m_manager;
    QPointer<PDevice> m_device;
    std::unique_ptr<QWidget> m_panel;
    bool m_isPulling = false;
    std::atomic<bool> m_areBalanced{true};
    // Guards m_shared: other threads use the device under it, this one takes the device away.
    std::mutex m_mutex;
    PDevice* m_shared = nullptr;
};
