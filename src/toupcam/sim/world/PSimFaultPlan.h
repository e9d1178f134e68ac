// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>
#include <toupcam/sim/stream/PSimFrameObserver.h>

#include <condition_variable>
#include <mutex>

class PSimWorld;

/// The fault plan of a scene: performs each step once, at its time or frame. The same plan has the
/// same effect on the same frames in every run. Callable from any thread.
class PSimFaultPlan : public std::enable_shared_from_this<PSimFaultPlan> {
public:
    PSimFaultPlan(const PSimScene& scene, PSimWorld& world);
    ~PSimFaultPlan();
    PSimFaultPlan(const PSimFaultPlan&) = delete;
    PSimFaultPlan& operator=(const PSimFaultPlan&) = delete;

    /// Sets the calls that fail or take longer, performs the steps at 0 ms, and starts the clock
    /// for the later ones. Not from a callback.
    void start();
    /// Starts no more timed steps, and waits for one in progress. Not from a callback.
    void stop();

    /// The observer that reports the frames of one camera to the plan.
    std::shared_ptr<PSimFrameObserver> observer(const QByteArray& camera);

private:
    using Action = PSimFaultSpec::Action;
    class Observer;
    struct Step {
        PSimFaultSpec spec;
        bool done = false;
    };

    bool isLost(const QByteArray& camera, std::uint64_t taken, std::uint64_t triggered) const;
    bool isUnlucky(const PSimFaultSpec& step, std::uint64_t taken) const;
    void frameDone(const QByteArray& camera, std::uint64_t taken);
    const PSimFaultSpec* takeImmediate();
    void runTimer();
    const PSimFaultSpec* waitForTimed();
    Step* nextTimed();
    void perform(const PSimFaultSpec& step);
    void pushMalformed(const PSimFaultSpec& step);

    PSimWorld& m_world;
    const std::uint64_t m_seed;
    const std::chrono::steady_clock::time_point m_loaded;
    std::mutex m_mutex; // guards the steps' done marks and all below but the steps themselves
    std::condition_variable m_wake;
    std::vector<Step> m_steps;
    bool m_stopping = false;
    bool m_timerRuns = false;
};
