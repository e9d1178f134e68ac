// SPDX-License-Identifier: MIT
#pragma once

#include <PLog/PLogSink.h>

#include <QTimer>
#include <QWidget>

#include <memory>

class QPlainTextEdit;

/// The newest records of the log, as lines. The GUI thread.
class PLogPanel : public QWidget {
    Q_OBJECT

public:
    /// Shows the records in the sink.
    explicit PLogPanel(std::shared_ptr<PMemoryLogSink> sink, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void refresh();

    std::shared_ptr<PMemoryLogSink> m_sink;
    QPlainTextEdit* m_text; // child
    QTimer m_refresh;       ///< while it is visible
};
