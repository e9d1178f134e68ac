// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PRangeWidgetBase.h>

#include <PCore/PMinMaxRange.h>

/// A whole number of a range: slider and number field in one. The step counts as 1 if it is not
/// positive. The GUI thread.
class PRangeWidget : public PRangeWidgetBase {
    Q_OBJECT

public:
    explicit PRangeWidget(QWidget* parent = nullptr);

    /// The range. A value outside it, or between its steps, becomes the nearest of the range; that
    /// is reported.
    void setRange(const PMinMaxRange<int>& range);
    const PMinMaxRange<int>& range() const { return m_range; }
    int value() const;
    /// Shows what somebody else has: the value as it is, also outside the range or between its
    /// steps. Silent.
    void showValue(const PMinMaxRange<int>& range, int value);

public slots:
    /// The value, brought to the nearest of the range. Reported if it is another one.
    void setValue(int value);

signals:
    /// The value is another one, by hand or by setValue() or setRange().
    void valueChanged(int value);

private:
    void reportChange() override;

    PMinMaxRange<int> m_range{0, 100, 1};
};
