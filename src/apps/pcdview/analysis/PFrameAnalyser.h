// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <QObject>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

/// Analyses pictures on a thread of its own, the newest one only, and rests at least as long as it
/// has worked, so that half a core is the most it takes. The GUI thread.
class PFrameAnalyser : public QObject {
    Q_OBJECT

public:
    explicit PFrameAnalyser(QObject* parent = nullptr);
    /// Waits for the analysis under way.
    ~PFrameAnalyser() override;

    /// Has this picture analysed next; one that still waits is forgotten.
    void offer(const PImage& image);
    /// Discards what waits or is under way: its result is not emitted.
    void forget();

signals:
    void analysed(const PFrameAnalysis& analysis);

protected:
    void customEvent(QEvent* event) override;

private:
    void work();
    std::optional<PImage> nextImage();
    void tell(PFrameAnalysis analysis);
    void rest(std::chrono::steady_clock::duration atLeast);

    std::mutex m_mutex; // the GUI thread leaves pictures and takes results, the worker the reverse
    std::condition_variable m_wake;
    std::optional<PImage> m_waiting;
    std::optional<PFrameAnalysis> m_result;
    quint64 m_round = 0; ///< a new one begins with forget()
    quint64 m_roundAtWork = 0;
    bool m_ending = false;
    std::thread m_worker;
};
