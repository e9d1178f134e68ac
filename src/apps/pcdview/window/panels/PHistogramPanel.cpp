// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/panels/PHistogramPanel.h>

#include <apps/pcdview/analysis/PHistogramWidget.h>

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QSettings>
#include <QVBoxLayout>

namespace {

const QString logarithmicKey = u"histogram/logarithmic"_qs;

constexpr int leastNumbersWidth = 250; // so that nothing moves when they appear

QString percent(double share) {
    return QLocale().toString(share * 100, 'f', 2) + u" %"_qs;
}

/// Also where the last ones are zeros, so that the text does not jump while the user turns the
/// focus.
QString fourDigits(double number) {
    QLocale locale;
    locale.setNumberOptions(locale.numberOptions() | QLocale::IncludeTrailingZeroesAfterDot);
    return locale.toString(number, 'g', 4);
}

} // namespace

PHistogramPanel::PHistogramPanel(QWidget* parent)
    : QWidget(parent)
    , m_histogram(new PHistogramWidget)
    , m_mean(new QLabel)
    , m_over(new QLabel)
    , m_under(new QLabel)
    , m_focus(new QLabel) {
    auto* const logarithmic = new QCheckBox(tr("Logarithmic"));
    connect(logarithmic, &QCheckBox::toggled, this, [this](bool on) {
        m_histogram->setLogarithmic(on);
        QSettings().setValue(logarithmicKey, on);
    });
    logarithmic->setChecked(QSettings().value(logarithmicKey, false).toBool());
    m_focus->setToolTip(tr("Tenengrad measure divided by the squared mean; higher is sharper. "
                           "Compare values of the same field while focusing."));
    m_mean->setObjectName(u"mean"_qs);
    m_over->setObjectName(u"overexposed"_qs);
    m_focus->setObjectName(u"focus"_qs);
    auto* const numbers = new QFormLayout;
    numbers->addRow(tr("Mean:"), m_mean);
    numbers->addRow(tr("Overexposed:"), m_over);
    numbers->addRow(tr("Black:"), m_under);
    numbers->addRow(tr("Focus score:"), m_focus);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_histogram, 1);
    column->addWidget(logarithmic);
    column->addLayout(numbers);
    setMinimumWidth(leastNumbersWidth);
    setAnalysis({});
}

void PHistogramPanel::setAnalysis(const PFrameAnalysis& analysis) {
    m_analysis = analysis;
    m_histogram->setAnalysis(analysis);
    const bool isKnown = analysis.pixels > 0;
    m_mean->setText(means());
    m_over->setText(isKnown ? percent(analysis.overShare()) : u"–"_qs);
    m_under->setText(isKnown ? percent(analysis.underShare()) : u"–"_qs);
    m_focus->setText(isKnown ? fourDigits(analysis.focus) : u"–"_qs);
}

QString PHistogramPanel::means() const {
    if (m_analysis.pixels == 0)
        return u"–"_qs;
    QStringList texts;
    const QStringList names =
        m_analysis.isGrey() ? QStringList{QString()} : QStringList{u"R "_qs, u"G "_qs, u"B "_qs};
    for (std::size_t channel = 0; channel < m_analysis.channels.size(); ++channel) {
        const QString mean = QLocale().toString(m_analysis.mean(channel), 'f', 1);
        texts.append(names[qsizetype(channel)] + mean);
    }
    return texts.join(u"   "_qs);
}

void PHistogramPanel::showEvent(QShowEvent*) {
    emit shown();
}

#include "moc_PHistogramPanel.cpp"
