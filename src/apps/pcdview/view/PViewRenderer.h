// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/view/PViewGeometry.h>
#include <apps/pcdview/view/PViewStyle.h>

#include <PCore/work/PPostedCalls.h>
#include <PCore/work/PWorkQueue.h>

#include <PDip/PImage.h>

#include <QColor>
#include <QImage>
#include <QObject>

#include <atomic>
#include <memory>
#include <optional>

/// Renders the newest picture of a stream on its own thread, so that the GUI thread only has to
/// paint the result. The GUI thread.
class PViewRenderer : public QObject {
    Q_OBJECT

public:
    /// What PViewSampler::render() takes.
    struct Task {
        PImage image;
        PViewGeometry geometry;
        PViewStyle style;
        QColor around;
    };

    explicit PViewRenderer(QObject* parent = nullptr);

    /// Renders this next; what still waits is discarded.
    void offer(const Task& task);
    /// Discards what waits, and does not emit the result of what is in progress.
    void forget();
    /// Takes a canvas that is no longer shown, to render into its memory.
    void reuse(QImage canvas) { m_room = std::move(canvas); }

signals:
    /// A picture was rendered. `isNewest`: no other one was offered meanwhile.
    void rendered(const QImage& canvas, bool isNewest);

private:
    /// What is being rendered.
    struct Job {
        QImage canvas;
        quint64 round = 0;
        std::atomic<bool> isDone{false}; ///< the canvas belongs to the GUI thread again
        bool isAwaited = false;          ///< was done when a picture was offered
    };

    void renderNext();
    void takeResult();

    std::optional<Task> m_next;
    QImage m_room;
    quint64 m_round = 0;        ///< incremented by forget()
    std::shared_ptr<Job> m_job; ///< null: none
    PPostedCalls m_results;
    PWorkQueue m_work; // last: it posts results until its thread is joined
};
