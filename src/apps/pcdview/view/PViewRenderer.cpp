// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewRenderer.h>

#include <apps/pcdview/view/PViewSampler.h>

#include <memory>
#include <utility>

PViewRenderer::PViewRenderer(QObject* parent)
    : QObject(parent)
    , m_work(1) {
}

void PViewRenderer::offer(const Task& task) {
    m_next = task;
    renderNext();
}

void PViewRenderer::forget() {
    ++m_round;
    m_next.reset();
}

void PViewRenderer::renderNext() {
    if (!m_next || m_isWorking)
        return;
    const auto canvas = std::make_shared<QImage>(std::exchange(m_room, QImage()));
    m_isWorking = m_work.push(
        1,
        [canvas, task = *std::exchange(m_next, std::nullopt)] {
            *canvas = PViewSampler::render(task.image, task.geometry, task.style, task.around,
                                           std::move(*canvas));
            return PStatus(PStatus::Ok);
        },
        [this, canvas, round = m_round](const PStatus& result) {
            if (!result.isOk())
                qWarning("A picture was not rendered: %s", qPrintable(result.reason()));
            // The hop back to the GUI thread. The frame was returned to its pool before.
            m_results.post([this, canvas, round] { finish(std::exchange(*canvas, {}), round); });
        });
}

void PViewRenderer::finish(const QImage& canvas, quint64 round) {
    m_isWorking = false;
    if (round == m_round && !canvas.isNull())
        emit rendered(canvas, !m_next);
    renderNext();
}
