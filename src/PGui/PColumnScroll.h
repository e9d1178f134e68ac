// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

/// A scroll area for a column of controls: it scrolls up and down, and is as wide as the column
/// needs at least, so that nothing is cut off at the right. The GUI thread.
class PColumnScroll : public QScrollArea {
    Q_OBJECT

public:
    /// Without a frame, and empty until setWidget() gives it the column.
    explicit PColumnScroll(QWidget* parent = nullptr);

    /// As wide as the column and the scroll bar beside it; how high is for whoever lays it out.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int leastWidth() const;
};
