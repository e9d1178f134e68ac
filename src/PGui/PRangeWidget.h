// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PRangeWidgetBase.h>

#include <PCore/PExport.h>
#include <PCore/PMinMaxRange.h>

/// Slider and number field for a whole number in a range. A step that is not positive counts as 1.
/// The GUI thread.
class PCD_EXPORT PRangeWidget : public PRangeWidgetBase {
    Q_OBJECT

public:
    explicit PRangeWidget(QWidget* parent = nullptr);

    /// Sets the range. A value outside it, or between its steps, changes to the nearest value of
    /// the range, and valueChanged() is emitted.
    void setRange(const PMinMaxRange<int>& range);
    const PMinMaxRange<int>& range() const { return m_range; }
    /// 0 if none is known.
    int value() const;
    /// Shows a value held elsewhere as it is, even outside the range or between its steps. Emits
    /// nothing.
    void showValue(const PMinMaxRange<int>& range, int value);
    /// Shows that the value is not known: an empty field. Emits nothing.
    void showNoValue(const PMinMaxRange<int>& range);

public slots:
    /// Sets the value, rounded to the nearest of the range. Emits valueChanged() if it changes.
    void setValue(int value);

signals:
    /// The value was changed by the user, setValue() or setRange().
    void valueChanged(int value);

private:
    void reportChange() override;

    PMinMaxRange<int> m_range{0, 100, 1};
};
