// SPDX-License-Identifier: MIT
// Rounds of random actions on several threads at once: the program's main thread and another one of
// its threads, the world that plugs and unplugs, and the threads of the SDK, all of them delayed
// where they hand over to each other. Worth most under the sanitizers. scripts/races runs more.
#include <reliability/DelayHook.h>
#include <reliability/ProcessState.h>
#include <reliability/QuietLog.h>
#include <reliability/RaceHost.h>
#include <reliability/ReliableCamera.h>
#include <reliability/ShortWait.h>
#include <reliability/Watchdog.h>

#include <PCdGui/PCdGui.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <iostream>
#include <random>
#include <thread>

namespace {

constexpr std::chrono::seconds longestRound(120);
constexpr int actionsOfARound = 60;

/// One thing that happens to the camera from outside the program.
void changeWorld(std::mt19937& random) {
    constexpr unsigned events[] = {TOUPCAM_EVENT_IMAGE, TOUPCAM_EVENT_STILLIMAGE,
                                   TOUPCAM_EVENT_EXPOSURE, TOUPCAM_EVENT_NOFRAMETIMEOUT,
                                   TOUPCAM_EVENT_DISCONNECTED};
    switch (random() % 12) {
    case 0:
        ToupcamSim_unplug(ReliableCamera::id);
        break;
    case 1:
    case 2:
        ToupcamSim_plug(ReliableCamera::id);
        break;
    case 3:
        ToupcamSim_fireHotPlug();
        break;
    case 4:
        ReliableCamera::pushFrame();
        break;
    case 5:
        ReliableCamera::pushStill();
        break;
    case 6:
        ReliableCamera::pushMalformed();
        break;
    case 7:
        if (random() % 4 == 0)
            ReliableCamera::pushLoss();
        break;
    case 8:
        ToupcamSim_fireEvent(ReliableCamera::id, events[random() % std::size(events)]);
        break;
    case 9:
        ToupcamSim_holdFrames(ReliableCamera::id, int(random() % 2));
        break;
    default:
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 500));
    }
}

/// A thread that repeats an action until the round is over. Joined when it is destroyed.
class Repeating {
public:
    Repeating(std::uint64_t seed, std::function<void(std::mt19937&)> action)
        : m_thread([this, seed, action = std::move(action)] {
            std::mt19937 random{std::mt19937::result_type(seed)};
            while (!m_isOver) {
                action(random);
                DelayHook::nap();
            }
        }) {}
    ~Repeating() {
        m_isOver = true;
        m_thread.join();
    }
    Repeating(const Repeating&) = delete;
    Repeating& operator=(const Repeating&) = delete;

private:
    std::atomic<bool> m_isOver{false};
    std::thread m_thread;
};

class Races : public testing::Test {
protected:
    Races() {
        PCdGui::install();
        // Its brightness changes with the exposure, so that automatic exposure reports changes.
        ReliableCamera::install(R"({"kind": "flat", "level": 0.3})");
        runRound(firstSeed()); // threads and descriptors that are made once
        m_idle = ProcessState::now();
    }
    ~Races() override { ToupcamSim_reset(); }

    static std::uint64_t firstSeed() {
        return qEnvironmentVariable("PCD_RACES_SEED", u"1"_qs).toULongLong();
    }
    static int rounds() {
        const int wanted = qEnvironmentVariableIntValue("PCD_RACES");
        return wanted > 0 ? wanted : 100;
    }

    void runRound(std::uint64_t seed) {
        m_watchdog.watch("scripts/races --seed " + std::to_string(seed) + " --rounds 1");
        DelayHook::begin(seed);
        {
            const Repeating world(seed + 1, changeWorld); // goes on while the register is unloaded
            RaceHost host(seed);
            const Repeating worker(
                seed + 2, [&host](std::mt19937& random) { host.useFromAnyThread(random); });
            for (int i = 0; i < actionsOfARound; ++i)
                host.act();
            EXPECT_TRUE(host.areLedgersBalanced()) << "seed " << seed;
        }
        DelayHook::end();
        ToupcamSim_plug(ReliableCamera::id);
        ToupcamSim_holdFrames(ReliableCamera::id, 0);
        ToupcamSim_clearJournal();
        m_watchdog.rest();
    }

    void checkLeaks(std::uint64_t seed) {
        EXPECT_EQ(ToupcamSim_openHandles(), 0U) << "seed " << seed;
        EXPECT_TRUE(waitShortly([this] { return ProcessState::now().isIdleAs(m_idle); },
                                std::chrono::seconds(20)))
            << "seed " << seed << ": the process holds " << ProcessState::now().text().toStdString()
            << " instead of " << m_idle.text().toStdString() << ": "
            << ProcessState::threadNames().toStdString();
    }

    const QuietLog m_quiet;
    Watchdog m_watchdog{longestRound};
    ProcessState m_idle;
};

TEST_F(Races, whatever_happens_at_the_same_time_nothing_breaks) {
    for (int i = 0; i < rounds() && !HasFailure(); ++i) {
        const std::uint64_t seed = firstSeed() + std::uint64_t(i);
        runRound(seed);
        checkLeaks(seed);
    }
    std::cout << "Rounds: " << rounds() << ", from seed " << firstSeed()
              << ". Delays: " << DelayHook::naps() << '\n';
}

} // namespace
