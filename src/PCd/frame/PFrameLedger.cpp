// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameLedger.h>

#include <numeric>

namespace {

struct OutcomeText {
    PFrameOutcome outcome;
    const char* key;
    const char* title;
};

constexpr std::array<OutcomeText, PFrameOutcomeCount> texts{{
    {PFrameOutcome::Delivered, "delivered", "delivered"},
    {PFrameOutcome::LostInCamera, "lost_in_camera", "lost in the camera"},
    {PFrameOutcome::BadDepth, "bad_depth", "dropped: unknown pixel depth"},
    {PFrameOutcome::BadSize, "bad_size", "dropped: wrong size"},
    {PFrameOutcome::NoMemory, "no_memory", "dropped: no memory"},
    {PFrameOutcome::DroppedWaiting, "dropped_waiting", "dropped while waiting"},
    {PFrameOutcome::FailedInWriter, "failed_in_writer", "failed in a writer"},
    {PFrameOutcome::Failed, "failed", "failed in a listener"},
    {PFrameOutcome::NotRequested, "not_wanted", "arrived after the last requested frame"},
}};

} // namespace

bool PFrameLedger::isBalanced() const {
    return produced == std::accumulate(outcomes.begin(), outcomes.end(), waiting);
}

PFrameLedger PFrameLedger::since(const PFrameLedger& start) const {
    PFrameLedger span = *this;
    span.produced -= start.produced - start.waiting;
    span.snapshots -= start.snapshots;
    for (std::size_t i = 0; i < outcomes.size(); ++i)
        span.outcomes[i] -= start.outcomes[i];
    return span;
}

const std::array<PFrameOutcome, PFrameOutcomeCount>& PFrameLedger::allOutcomes() {
    static const auto outcomes = [] {
        std::array<PFrameOutcome, PFrameOutcomeCount> all{};
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = texts[i].outcome;
        return all;
    }();
    return outcomes;
}

QByteArray PFrameLedger::key(PFrameOutcome outcome) {
    return texts[std::size_t(outcome)].key;
}

QString PFrameLedger::title(PFrameOutcome outcome) {
    return QString::fromLatin1(texts[std::size_t(outcome)].title);
}
