// SPDX-License-Identifier: MIT
#include <toupcam/sim/world/PSimFaultPlan.h>

#include <toupcam/sim/frame/PSimRandom.h>
#include <toupcam/sim/world/PSimWorld.h>
#include <toupcam/sim/world/PSimZeroPages.h>

#include <algorithm>
#include <thread>
#include <utility>

namespace {

constexpr std::size_t leastBytes = 4096; // after a malformed header

} // namespace

class PSimFaultPlan::Observer : public PSimFrameObserver {
public:
    Observer(std::shared_ptr<PSimFaultPlan> plan, QByteArray camera)
        : m_plan(std::move(plan))
        , m_camera(std::move(camera)) {}

    bool frameTaken(std::uint64_t taken, std::uint64_t triggered) override {
        return !m_plan->isLost(m_camera, taken, triggered);
    }
    void frameDone(std::uint64_t taken) override { m_plan->frameDone(m_camera, taken); }

private:
    std::shared_ptr<PSimFaultPlan> m_plan;
    QByteArray m_camera;
};

PSimFaultPlan::PSimFaultPlan(const PSimScene& scene, PSimWorld& world)
    : m_world(world)
    , m_seed(scene.seed)
    , m_loaded(std::chrono::steady_clock::now()) {
    for (const PSimFaultSpec& spec : scene.faults)
        m_steps.push_back({spec});
}

PSimFaultPlan::~PSimFaultPlan() {
    stop();
}

std::shared_ptr<PSimFrameObserver> PSimFaultPlan::observer(const QByteArray& camera) {
    return std::make_shared<Observer>(shared_from_this(), camera);
}

void PSimFaultPlan::start() {
    for (const Step& step : m_steps) {
        const PSimFaultSpec& spec = step.spec;
        if (spec.action == Action::Fail)
            m_world.faults().fail(spec.function.toStdString(), spec.option, spec.skip, spec.count,
                                  spec.result);
        else if (spec.action == Action::Delay)
            m_world.faults().delay(spec.function.toStdString(), spec.ms, spec.skip);
        else if (spec.action == Action::ReportSize)
            m_world.faults().reportSize(spec.function.toStdString(),
                                        {unsigned(spec.width), unsigned(spec.height)});
        else if (spec.action == Action::Answer)
            m_world.faults().answerOption(spec.option.value_or(0), spec.value);
    }
    // Here and not by the timer, so that nothing that the client does comes before them.
    while (const PSimFaultSpec* const step = takeImmediate())
        perform(*step);
    const std::lock_guard lock(m_mutex);
    if (!nextTimed())
        return;
    // Detached: nothing is unloaded before the process ends, and nothing would join it then.
    m_timerRuns = true;
    std::thread([self = shared_from_this()] { self->runTimer(); }).detach();
}

void PSimFaultPlan::stop() {
    std::unique_lock lock(m_mutex);
    m_stopping = true;
    m_wake.notify_all();
    m_wake.wait(lock, [this] { return !m_timerRuns; });
}

bool PSimFaultPlan::isLost(const QByteArray& camera, std::uint64_t taken,
                           std::uint64_t triggered) const {
    return std::any_of(m_steps.begin(), m_steps.end(), [&](const Step& step) {
        if (step.spec.camera != camera)
            return false;
        if (step.spec.action == Action::DropTrigger)
            return step.spec.nth == triggered;
        return step.spec.action == Action::Lose && isUnlucky(step.spec, taken);
    });
}

bool PSimFaultPlan::isUnlucky(const PSimFaultSpec& step, std::uint64_t taken) const {
    // The frame's number decides, not the order of the calls: the same in every run.
    PSimRandom random(PSimRandom::mix(m_seed ^ PSimRandom::mix(taken)));
    return random.uniform() < step.probability;
}

void PSimFaultPlan::frameDone(const QByteArray& camera, std::uint64_t taken) {
    for (Step& step : m_steps) {
        const PSimFaultSpec& spec = step.spec;
        if (spec.camera != camera || !spec.afterFrames || *spec.afterFrames > taken)
            continue;
        {
            const std::lock_guard lock(m_mutex);
            if (std::exchange(step.done, true))
                continue;
        }
        perform(spec);
    }
}

PSimFaultPlan::Step* PSimFaultPlan::nextTimed() {
    Step* next = nullptr;
    for (Step& step : m_steps) {
        if (step.spec.atMs && !step.done && (!next || *step.spec.atMs < *next->spec.atMs))
            next = &step;
    }
    return next;
}

// The next step at 0 ms, marked as done; null if none is left.
const PSimFaultSpec* PSimFaultPlan::takeImmediate() {
    const std::lock_guard lock(m_mutex);
    Step* const step = nextTimed();
    if (step == nullptr || *step->spec.atMs > 0)
        return nullptr;
    step->done = true;
    return &step->spec;
}

void PSimFaultPlan::runTimer() {
    // Without the lock: a step may run callbacks of the client and wait for them.
    while (const PSimFaultSpec* const step = waitForTimed())
        perform(*step);
}

// Waits for the next timed step and returns it; null, with the timer counted as ended, if none is
// left or the plan stops.
const PSimFaultSpec* PSimFaultPlan::waitForTimed() {
    std::unique_lock lock(m_mutex);
    if (Step* const step = nextTimed()) {
        const auto when = m_loaded + std::chrono::milliseconds(*step->spec.atMs);
        if (!m_wake.wait_until(lock, when, [this] { return m_stopping; })) {
            step->done = true;
            return &step->spec;
        }
    }
    m_timerRuns = false;
    m_wake.notify_all();
    return nullptr;
}

void PSimFaultPlan::perform(const PSimFaultSpec& step) {
    switch (step.action) {
    case Action::Unplug:
        m_world.unplug(step.camera);
        break;
    case Action::Plug:
        m_world.plug(step.camera);
        break;
    case Action::Hold:
    case Action::Release:
        m_world.hold(step.camera, step.action == Action::Hold);
        break;
    case Action::Event:
        m_world.fireEvent(step.camera, step.event);
        break;
    case Action::PushMalformed:
        pushMalformed(step);
        break;
    case Action::Lose: // checked for every frame
    case Action::DropTrigger:
    case Action::Fail: // done at the start
    case Action::Delay:
    case Action::ReportSize:
    case Action::Answer:
        break;
    }
}

void PSimFaultPlan::pushMalformed(const PSimFaultSpec& step) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = step.width;
    header.biHeight = step.height;
    header.biPlanes = 1;
    header.biBitCount = step.bits;
    header.biSizeImage = step.sizeImage;
    // All bytes that the header declares: a client may believe it.
    const PSimZeroPages zeros(std::max<std::size_t>(step.sizeImage, leastBytes));
    if (zeros.data() != nullptr) // null would report a lost camera
        m_world.pushRaw(step.camera, zeros.data(), &header, 0);
}
