// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PRangeScale.h>

#include <PCore/PExport.h>

#include <QSlider>

/// A slider over the values of a range, however many there are, using the positions of a
/// PRangeScale. QSlider's own value is the position. The GUI thread.
class PCD_TEST_EXPORT PRangeSlider : public QSlider {
    Q_OBJECT

public:
    explicit PRangeSlider(QWidget* parent = nullptr);
    ~PRangeSlider() override;

    /// Sets the range; emits nothing.
    void setScale(const PRangeScale& scale);
    /// Moves the handle to a value and emits nothing; while the user holds the handle it stays, and
    /// moves when released.
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
    int m_wheelRest = 0; ///< eighths of a degree, less than a notch
};
