// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointF>

class QWidget;

/// Drags a picture and turns the wheel on it without a pause, as long as this object exists. The
/// GUI thread.
class RestlessHand : public QObject {
public:
    /// The widget must outlive it.
    explicit RestlessHand(QWidget& widget);
    ~RestlessHand() override;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    QPointF place() const;
    void sendMouse(int type);
    void turnWheel(int notches);

    QWidget& m_widget;
    int m_step = 0;
};
