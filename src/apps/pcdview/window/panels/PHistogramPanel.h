// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <QWidget>

class PHistogramWidget;
class QLabel;

/// The histogram of the displayed picture, and the figures computed from its pixels. The GUI
/// thread.
class PHistogramPanel : public QWidget {
    Q_OBJECT

public:
    explicit PHistogramPanel(QWidget* parent = nullptr);

    /// Shows this analysis; an empty one clears the panel.
    void setAnalysis(const PFrameAnalysis& analysis);

signals:
    /// The panel became visible; the picture may not have been analysed while it was hidden.
    void shown();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QString means() const;

    PFrameAnalysis m_analysis;
    PHistogramWidget* m_histogram; // children
    QLabel* m_mean;
    QLabel* m_over;
    QLabel* m_under;
    QLabel* m_focus;
};
