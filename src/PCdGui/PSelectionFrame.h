// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QWidget>

class QPushButton;

/// A frame over a push button while it is the selected one of several, so that the selection is
/// visible in light and dark colours whatever the button's style. The GUI thread.
class PCD_TEST_EXPORT PSelectionFrame : public QWidget {
    Q_OBJECT

public:
    /// Puts a frame over each push button inside the page that is checkable and auto-exclusive; the
    /// buttons own them.
    static void addTo(const QWidget& page);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    explicit PSelectionFrame(QPushButton* button);
};
