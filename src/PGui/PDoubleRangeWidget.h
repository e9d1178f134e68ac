// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PRangeWidgetBase.h>

#include <PCore/PMinMaxRange.h>

/// A number of a range, with as many decimals as its ends and step have: slider and number field in
/// one. The GUI thread.
class PDoubleRangeWidget : public PRangeWidgetBase {
    Q_OBJECT

public:
    explicit PDoubleRangeWidget(QWidget* parent = nullptr);

    /// The range. A value outside it, or between its steps, becomes the nearest of the range; that
    /// is reported.
    void setRange(const PMinMaxRange<double>& range);
    const PMinMaxRange<double>& range() const { return m_range; }
    double value() const;
    /// Shows what somebody else has: the value as it is, also outside the range or between its
    /// steps. Silent.
    void showValue(const PMinMaxRange<double>& range, double value);

public slots:
    /// The value, brought to the nearest of the range. Reported if it is another one.
    void setValue(double value);

signals:
    /// The value is another one, by hand or by setValue() or setRange().
    void valueChanged(double value);

private:
    void reportChange() override;

    PMinMaxRange<double> m_range{0, 100, 1};
};
