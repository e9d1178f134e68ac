// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <PCore/work/PPostedCalls.h>
#include <PCore/work/PWorkQueue.h>

#include <QObject>
#include <QTimer>

/// Analyses the newest picture on its own thread, which starts others for a large one, and pauses
/// afterwards so long that it uses at most half a core. The GUI thread.
class PFrameAnalyser : public QObject {
    Q_OBJECT

public:
    explicit PFrameAnalyser(QObject* parent = nullptr);

    /// Analyses this picture next; one that still waits is discarded.
    void offer(const PImage& image);
    /// Discards the waiting picture, and does not emit the result of the one in progress.
    void forget();

signals:
    /// The newest picture was analysed.
    void analysed(const PFrameAnalysis& analysis);

private:
    using Clock = std::chrono::steady_clock;

    void analyseNext();
    void finish(const PFrameAnalysis& analysis, quint64 round, Clock::duration worked);

    PImage m_next;       ///< null: none waits
    quint64 m_round = 0; ///< incremented by forget()
    bool m_isWorking = false;
    QTimer m_rest;
    PPostedCalls m_results;
    PWorkQueue m_work; // last: it posts results until its thread is joined
};
