// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalyser.h>

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds leastRest(60); // a person sees no more of a histogram

} // namespace

PFrameAnalyser::PFrameAnalyser(QObject* parent)
    : QObject(parent)
    , m_worker([this] { work(); }) {
}

PFrameAnalyser::~PFrameAnalyser() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_all();
    m_worker.join();
}

void PFrameAnalyser::offer(const PImage& image) {
    if (image.isNull())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_waiting = image;
    }
    m_wake.notify_all();
}

void PFrameAnalyser::forget() {
    const std::lock_guard lock(m_mutex);
    ++m_round;
    m_waiting.reset();
    m_result.reset();
}

void PFrameAnalyser::customEvent(QEvent*) {
    std::optional<PFrameAnalysis> result;
    {
        const std::lock_guard lock(m_mutex);
        result = std::exchange(m_result, std::nullopt);
    }
    if (result)
        emit analysed(*result);
}

void PFrameAnalyser::work() {
    while (std::optional<PImage> image = nextImage()) {
        const auto begin = Clock::now();
        PFrameAnalysis analysis = PFrameAnalysis::of(*image);
        image.reset(); // back to the pool before the rest
        tell(std::move(analysis));
        rest(std::max<Clock::duration>(Clock::now() - begin, leastRest));
    }
}

std::optional<PImage> PFrameAnalyser::nextImage() {
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_ending || m_waiting; });
    if (m_ending)
        return std::nullopt;
    m_roundAtWork = m_round;
    return std::exchange(m_waiting, std::nullopt);
}

void PFrameAnalyser::tell(PFrameAnalysis analysis) {
    const std::lock_guard lock(m_mutex);
    if (m_roundAtWork != m_round)
        return;
    m_result = std::move(analysis);
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void PFrameAnalyser::rest(Clock::duration atLeast) {
    std::unique_lock lock(m_mutex);
    m_wake.wait_for(lock, atLeast, [this] { return m_ending; });
}
