// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PRangeScale.h>

#include <QSlider>

/// A slider over the values of a range, whatever their number: it works on the positions of a
/// PRangeScale. QSlider's own value is the position. The GUI thread.
class PRangeSlider : public QSlider {
    Q_OBJECT

public:
    explicit PRangeSlider(QWidget* parent = nullptr);
    ~PRangeSlider() override;

    /// The range; silent.
    void setScale(const PRangeScale& scale);
    /// Moves the handle to a value, silently; while a hand holds the handle it stays there, and
    /// goes to the value when it is let go.
    void showValue(double value);

signals:
    /// The user has chosen another value.
    void valuePicked(double value);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    void onAction(int action);
    void onPosition(int position);
    void step(int count);
    void page(int direction);
    void go(double target, int direction);
    void pick(double value);
    void place();

    PRangeScale m_scale;
    double m_value = 0;
    int m_wheelRest = 0; ///< eighths of a degree that do not make a notch yet
};
