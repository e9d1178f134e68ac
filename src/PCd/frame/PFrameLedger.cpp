// SPDX-License-Identifier: MIT
#include <PCd/frame/PFrameLedger.h>

#include <numeric>

namespace {

struct FateText {
    PFrameFate fate;
    const char* key;
    const char* title;
};

constexpr std::array<FateText, PFrameFateCount> texts{{
    {PFrameFate::Delivered, "delivered", "delivered"},
    {PFrameFate::LostInCamera, "lost_in_camera", "lost in the camera"},
    {PFrameFate::BadDepth, "bad_depth", "dropped: unknown pixel depth"},
    {PFrameFate::BadSize, "bad_size", "dropped: wrong size"},
    {PFrameFate::NoMemory, "no_memory", "dropped: no memory"},
    {PFrameFate::DroppedWaiting, "dropped_waiting", "dropped while waiting"},
    {PFrameFate::FailedInWriter, "failed_in_writer", "failed in a writer"},
    {PFrameFate::Failed, "failed", "failed in a listener"},
    {PFrameFate::NotWanted, "not_wanted", "came after the last one asked for"},
}};

} // namespace

bool PFrameLedger::isBalanced() const {
    return produced == std::accumulate(fates.begin(), fates.end(), waiting);
}

PFrameLedger PFrameLedger::since(const PFrameLedger& start) const {
    PFrameLedger span = *this;
    span.produced -= start.produced - start.waiting;
    span.snapshots -= start.snapshots;
    for (std::size_t i = 0; i < fates.size(); ++i)
        span.fates[i] -= start.fates[i];
    return span;
}

const std::array<PFrameFate, PFrameFateCount>& PFrameLedger::allFates() {
    static const auto fates = [] {
        std::array<PFrameFate, PFrameFateCount> all{};
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = texts[i].fate;
        return all;
    }();
    return fates;
}

QByteArray PFrameLedger::key(PFrameFate fate) {
    return texts[std::size_t(fate)].key;
}

QString PFrameLedger::title(PFrameFate fate) {
    return QString::fromLatin1(texts[std::size_t(fate)].title);
}
