// SPDX-License-Identifier: MIT
#pragma once

#include <QStatusBar>

/// A status bar whose messages never end in the middle of a word: one that does not fit beside the
/// fields loses its middle, and is the tool tip in full. The GUI thread.
class PMessageBar : public QStatusBar {
    Q_OBJECT

public:
    /// An empty bar without fields.
    explicit PMessageBar(QWidget* parent = nullptr);

    /// The message as far as there is room for it now.
    QString fittingMessage() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect messageArea() const;
};
