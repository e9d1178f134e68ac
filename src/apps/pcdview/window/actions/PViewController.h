// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/analysis/PFrameAnalyser.h>

#include <QObject>

class PCameraPage;
class PCameraTabs;
class PHistogramPanel;
class PViewActions;

/// How the picture in front is shown: its zoom, the marks on clipped pixels, the stretched
/// contrast, its histogram. It is analysed only while the result is visible. The GUI thread.
class PViewController : public QObject {
    Q_OBJECT

public:
    /// Actions, tabs and panel must outlive it.
    PViewController(const PViewActions& actions, PCameraTabs& tabs, PHistogramPanel& histogram,
                    QObject* parent = nullptr);

private:
    void connectActions();
    void addPage(PCameraPage* page);
    void showPage(PCameraPage* page);
    void analyse();
    void showAnalysis(const PFrameAnalysis& analysis);
    void applyStyle();

    const PViewActions& m_actions;
    PCameraTabs& m_tabs;
    PHistogramPanel& m_histogram;
    PFrameAnalyser m_analyser;
    PFrameAnalysis m_analysis; ///< of the picture in front; the last result
};
