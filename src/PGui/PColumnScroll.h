// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QScrollArea>

/// A scroll area for a column of controls: it scrolls vertically, and is at least as wide as the
/// column, so that nothing is cut off at the right. The GUI thread.
class PCD_EXPORT PColumnScroll : public QScrollArea {
    Q_OBJECT

public:
    /// Without a frame, and empty until setWidget() is called with the column.
    explicit PColumnScroll(QWidget* parent = nullptr);

    /// The width of the column and its scroll bar; the height is left to the layout.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int leastWidth() const;
};
