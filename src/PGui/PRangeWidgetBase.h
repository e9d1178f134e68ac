// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PNumberText.h>
#include <PGui/PRangeScale.h>

#include <PCore/PExport.h>

#include <QWidget>

#include <memory>

class PNumberField;
class PRangeSlider;

/// What PRangeWidget and PDoubleRangeWidget have in common: a slider and a number field that always
/// show the same value. Arrow and page keys, the wheel and typing work; the field takes the focus.
/// The GUI thread.
class PCD_EXPORT PRangeWidgetBase : public QWidget {
    Q_OBJECT

public:
    ~PRangeWidgetBase() override;

    /// A unit written after the number, with the space between them: " %".
    void setSuffix(const QString& suffix);
    /// The text form of numbers, where a suffix is not enough; never null.
    void setNumberText(std::shared_ptr<const PNumberText> text);
    /// The accessible name of the widget, its slider and its field.
    void setControlName(const QString& name);
    /// Shows or hides the slider; without a useful range only the field is shown.
    void setSliderVisible(bool visible);

protected:
    explicit PRangeWidgetBase(QWidget* parent);

    /// Set the range or the value, clamped, and emit once if the value changes. Numbers that are
    /// not finite are ignored.
    void takeScale(const PMinMaxRange<double>& range);
    void takeNumber(double number);
    /// Shows a value as it is, even outside the range; emits nothing.
    void showNumber(const PMinMaxRange<double>& range, double number);
    /// Shows that the value is not known: an empty field, and no slider to move, unless it is being
    /// dragged. The next value that is shown or entered ends this. Emits nothing.
    void showNoNumber(const PMinMaxRange<double>& range);
    double number() const { return m_number; }

    /// Emits the typed signal.
    virtual void reportChange() = 0;

private:
    void change(double number);
    void spreadScale(const PMinMaxRange<double>& range);

    PRangeScale m_scale;
    PRangeSlider* m_slider; // children
    PNumberField* m_field;
    double m_number = 0;
};
