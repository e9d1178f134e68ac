// SPDX-License-Identifier: MIT
#pragma once

#include <reliability/ProcessState.h>

#include <QStringList>

#include <vector>

/// Judges whether a program that repeats itself grows, by samples of its state at the same point of
/// each repetition. A value type; one thread.
class GrowthWatch {
public:
    /// What may be added to memory between the end of the warm-up and the last sample, by linear
    /// regression.
    struct Bounds {
        qint64 heapBytes = qint64(1) << 20;
        /// The simulator remembers every handle that it has given out.
        qint64 heapBytesARepetition = 128;
        qint64 residentBytes = qint64(8) << 20;
        bool isResidentJudged = true;
    };

    /// Fewer cannot be judged.
    static constexpr std::size_t fewestSamples = 10;

    explicit GrowthWatch(const Bounds& bounds)
        : m_bounds(bounds) {}

    /// A sample after this number of repetitions.
    void add(qint64 repetitions, const ProcessState& state);
    std::size_t samples() const { return m_samples.size(); }

    /// What grows, with the numbers, in words; empty if nothing does. The first fifth of the
    /// samples are the warm-up; with fewer than fewestSamples nothing can be judged, which is said.
    QStringList complaints() const;

private:
    struct Sample {
        qint64 repetitions;
        ProcessState state;
    };
    using Value = qint64 ProcessState::*;

    QString judgeCount(Value value, const QString& name) const;
    QString judgeMemory(Value value, const QString& name, double most) const;
    /// By linear regression, from the first judged sample to the last.
    double growth(Value value) const;
    std::size_t firstJudged() const { return m_samples.size() / 5; }
    const Sample& first() const { return m_samples[firstJudged()]; }
    const Sample& last() const { return m_samples.back(); }

    Bounds m_bounds;
    std::vector<Sample> m_samples;
};
