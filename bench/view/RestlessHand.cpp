// SPDX-License-Identifier: MIT
#include <view/RestlessHand.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int reportEveryMs = 8;       // a USB mouse reports 125 times a second
constexpr int stepsANotch = 25;        // five notches a second
constexpr int notchesAWay = 10;        // this number in, then the same number out
constexpr int angleOfNotch = 120;      // QWheelEvent: eighths of a degree, 15 degrees a notch
constexpr int stepsACircle = 100;      // of the hand
constexpr double circleOfWidget = 0.3; // its radius

} // namespace

RestlessHand::RestlessHand(QWidget& widget)
    : m_widget(widget) {
    sendMouse(QEvent::MouseButtonPress);
    startTimer(reportEveryMs, Qt::PreciseTimer);
}

RestlessHand::~RestlessHand() {
    sendMouse(QEvent::MouseButtonRelease);
}

void RestlessHand::timerEvent(QTimerEvent*) {
    ++m_step;
    sendMouse(QEvent::MouseMove);
    if (m_step % stepsANotch == 0)
        turnWheel(m_step / stepsANotch / notchesAWay % 2 == 0 ? 1 : -1);
}

QPointF RestlessHand::place() const {
    const double angle = 2 * M_PI * m_step / stepsACircle;
    const double radius = circleOfWidget * std::min(m_widget.width(), m_widget.height());
    return QPointF(m_widget.rect().center()) + radius * QPointF(std::cos(angle), std::sin(angle));
}

void RestlessHand::sendMouse(int type) {
    const bool isMove = type == QEvent::MouseMove;
    const bool isUp = type == QEvent::MouseButtonRelease;
    QMouseEvent event(QEvent::Type(type), place(), m_widget.mapToGlobal(place()),
                      isMove ? Qt::NoButton : Qt::LeftButton, isUp ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&m_widget, &event);
}

void RestlessHand::turnWheel(int notches) {
    QWheelEvent event(place(), m_widget.mapToGlobal(place()), QPoint(),
                      QPoint(0, notches * angleOfNotch), Qt::LeftButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&m_widget, &event);
}
