// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PRangeWidgetBase.h>

#include <PCore/PExport.h>
#include <PCore/PMinMaxRange.h>

/// Slider and number field for a number in a range, with as many decimals as its ends and step
/// have. The GUI thread.
class PCD_EXPORT PDoubleRangeWidget : public PRangeWidgetBase {
    Q_OBJECT

public:
    explicit PDoubleRangeWidget(QWidget* parent = nullptr);

    /// Sets the range. A value outside it, or between its steps, changes to the nearest value of
    /// the range, and valueChanged() is emitted.
    void setRange(const PMinMaxRange<double>& range);
    const PMinMaxRange<double>& range() const { return m_range; }
    double value() const;
    /// Shows a value held elsewhere as it is, even outside the range or between its steps. Emits
    /// nothing.
    void showValue(const PMinMaxRange<double>& range, double value);

public slots:
    /// Sets the value, rounded to the nearest of the range. Emits valueChanged() if it changes.
    void setValue(double value);

signals:
    /// The value was changed by the user, setValue() or setRange().
    void valueChanged(double value);

private:
    void reportChange() override;

    PMinMaxRange<double> m_range{0, 100, 1};
};
