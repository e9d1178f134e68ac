// SPDX-License-Identifier: MIT
#include <reliability/GrowthWatch.h>

namespace {

QString kibibytes(double bytes) {
    return u"%1 KiB"_qs.arg(bytes / 1024, 0, 'f', 0);
}

} // namespace

void GrowthWatch::add(qint64 repetitions, const ProcessState& state) {
    m_samples.push_back({repetitions, state});
}

QStringList GrowthWatch::complaints() const {
    if (m_samples.size() < fewestSamples)
        return {u"%1 samples are too few to judge, expected at least %2"_qs.arg(
            QString::number(m_samples.size()), QString::number(fewestSamples))};
    const qint64 repetitions = last().repetitions - first().repetitions;
    const double mostHeap =
        double(m_bounds.heapBytes + m_bounds.heapBytesARepetition * repetitions);
    QStringList complaints{judgeCount(&ProcessState::threads, u"threads"_qs),
                           judgeCount(&ProcessState::descriptors, u"file descriptors"_qs),
                           judgeMemory(&ProcessState::heapBytes, u"heap"_qs, mostHeap)};
    if (m_bounds.isResidentJudged)
        complaints.append(judgeMemory(&ProcessState::residentBytes, u"resident memory"_qs,
                                      double(m_bounds.residentBytes)));
    complaints.removeAll(QString());
    return complaints;
}

QString GrowthWatch::judgeCount(Value value, const QString& name) const {
    const qint64 before = first().state.*value;
    const qint64 after = last().state.*value;
    if (before == after)
        return QString();
    return u"%1: %2 after %3 repetitions, %4 after %5"_qs.arg(
        name, QString::number(before), QString::number(first().repetitions), QString::number(after),
        QString::number(last().repetitions));
}

QString GrowthWatch::judgeMemory(Value value, const QString& name, double most) const {
    const double grown = growth(value);
    if (grown <= most)
        return QString();
    return u"%1: grew by %2 in %3 repetitions, expected at most %4"_qs.arg(
        name, kibibytes(grown), QString::number(last().repetitions - first().repetitions),
        kibibytes(most));
}

double GrowthWatch::growth(Value value) const {
    const auto count = double(m_samples.size() - firstJudged());
    double meanX = 0;
    double meanY = 0;
    for (std::size_t i = firstJudged(); i < m_samples.size(); ++i) {
        meanX += double(m_samples[i].repetitions) / count;
        meanY += double(m_samples[i].state.*value) / count;
    }
    double product = 0;
    double square = 0;
    for (std::size_t i = firstJudged(); i < m_samples.size(); ++i) {
        const double x = double(m_samples[i].repetitions) - meanX;
        product += x * (double(m_samples[i].state.*value) - meanY);
        square += x * x;
    }
    const double slope = square > 0 ? product / square : 0;
    return slope * double(last().repetitions - first().repetitions);
}
