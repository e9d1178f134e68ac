// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalyser.h>

#include <algorithm>
#include <utility>

namespace {

constexpr std::chrono::milliseconds leastRest(60); // faster changes of a histogram are not visible

} // namespace

PFrameAnalyser::PFrameAnalyser(QObject* parent)
    : QObject(parent)
    , m_work(1) {
    m_rest.setSingleShot(true);
    connect(&m_rest, &QTimer::timeout, this, &PFrameAnalyser::analyseNext);
}

void PFrameAnalyser::offer(const PImage& image) {
    if (image.isNull())
        return;
    m_next = image;
    analyseNext();
}

void PFrameAnalyser::forget() {
    ++m_round;
    m_next = PImage();
}

void PFrameAnalyser::analyseNext() {
    if (m_next.isNull() || m_isWorking || m_rest.isActive())
        return;
    const auto analysis = std::make_shared<PFrameAnalysis>();
    m_isWorking = m_work.push(
        1,
        [analysis, image = std::exchange(m_next, PImage())] {
            *analysis = PFrameAnalysis::of(image);
            return PStatus(PStatus::Ok);
        },
        [this, analysis, round = m_round, begin = Clock::now()](const PStatus& result) {
            if (!result.isOk())
                qWarning("A picture was not analysed: %s", qPrintable(result.reason()));
            // The hop back to the GUI thread. The image was returned to its pool before.
            m_results.post([this, analysis, round, worked = Clock::now() - begin] {
                finish(*analysis, round, worked);
            });
        });
}

void PFrameAnalyser::finish(const PFrameAnalysis& analysis, quint64 round, Clock::duration worked) {
    m_isWorking = false;
    // Half a core: what all threads used together, but for the time that has passed meanwhile.
    const Clock::duration owed = worked * (2 * analysis.threads - 1);
    m_rest.start(
        std::chrono::ceil<std::chrono::milliseconds>(std::max<Clock::duration>(owed, leastRest)));
    if (round == m_round)
        emit analysed(analysis);
}

#include "moc_PFrameAnalyser.cpp"
