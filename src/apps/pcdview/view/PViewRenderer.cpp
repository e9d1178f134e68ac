// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewRenderer.h>

#include <apps/pcdview/view/PViewSampler.h>

#include <utility>

PViewRenderer::PViewRenderer(QObject* parent)
    : QObject(parent)
    , m_work(1) {
}

void PViewRenderer::offer(const Task& task) {
    m_next = task;
    // A result that was there at the last picture already is not delivered: there may have been no
    // memory to post it.
    if (m_job && m_job->isDone && std::exchange(m_job->isAwaited, true))
        takeResult();
    renderNext();
}

void PViewRenderer::forget() {
    ++m_round;
    m_next.reset();
}

void PViewRenderer::renderNext() {
    if (!m_next || m_job)
        return;
    const auto job = std::make_shared<Job>();
    job->canvas = std::exchange(m_room, QImage());
    job->round = m_round;
    const bool isTaken = m_work.push(
        1,
        [job, task = *std::exchange(m_next, std::nullopt)] {
            job->canvas = PViewSampler::render(task.image, task.geometry, task.style, task.around,
                                               std::move(job->canvas));
            return PStatus(PStatus::Ok);
        },
        [this, job](const PStatus& result) {
            if (!result.isOk())
                qWarning("A picture was not rendered: %s", qPrintable(result.reason()));
            job->isDone = true;
            // The hop back to the GUI thread. The frame was returned to its pool before.
            m_results.post([this] {
                takeResult();
                renderNext();
            });
        });
    if (isTaken)
        m_job = job;
}

void PViewRenderer::takeResult() {
    if (!m_job || !m_job->isDone)
        return;
    const std::shared_ptr<Job> job = std::exchange(m_job, nullptr);
    if (job->round == m_round && !job->canvas.isNull())
        emit rendered(std::exchange(job->canvas, QImage()), !m_next);
}

#include "moc_PViewRenderer.cpp"
