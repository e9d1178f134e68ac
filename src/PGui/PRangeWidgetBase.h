// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PNumberText.h>
#include <PGui/PRangeScale.h>

#include <QWidget>

#include <memory>

class PNumberField;
class PRangeSlider;

/// What PRangeWidget and PDoubleRangeWidget have in common: a slider and a number field that always
/// show the same value. Arrow and page keys, the wheel and typing work; the field takes the focus.
/// The GUI thread.
class PRangeWidgetBase : public QWidget {
    Q_OBJECT

public:
    ~PRangeWidgetBase() override;

    /// A unit written after the number, with the space between them: " %".
    void setSuffix(const QString& suffix);
    /// How numbers are written and read, where a suffix is not enough; never null.
    void setNumberText(std::shared_ptr<const PNumberText> text);
    /// What the widget is called where it cannot be seen, slider and field included.
    void setControlName(const QString& name);
    /// Without the slider only the field is shown: where there is no range worth one.
    void setSliderVisible(bool visible);

protected:
    explicit PRangeWidgetBase(QWidget* parent);

    /// Take a range or a value, clamped; report once if the value is another one then. What is not
    /// finite is ignored.
    void takeScale(const PMinMaxRange<double>& range);
    void takeNumber(double number);
    /// Shows a value as it is, in or out of the range; silent.
    void showNumber(const PMinMaxRange<double>& range, double number);
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
