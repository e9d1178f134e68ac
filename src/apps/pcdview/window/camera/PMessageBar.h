// SPDX-License-Identifier: MIT
#pragma once

#include <QStatusBar>

/// A status bar that shortens a message that does not fit beside the fields, a path in it first,
/// and shows it in full as a tool tip. The GUI thread.
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
