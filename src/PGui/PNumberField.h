// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PNumberText.h>
#include <PGui/PRangeScale.h>

#include <PCore/PExport.h>

#include <QAbstractSpinBox>

#include <memory>

/// A field for one number of a range, with arrows. It also shows a number outside the range as it
/// is; what the user enters is rounded to the nearest value of the range. Enter or leaving the
/// field commits the text, Escape discards it. The GUI thread.
class PCD_EXPORT PNumberField : public QAbstractSpinBox {
    Q_OBJECT

public:
    explicit PNumberField(QWidget* parent = nullptr);
    ~PNumberField() override;

    /// The range that entries are limited to. The displayed value stays.
    void setScale(const PRangeScale& scale);
    const PRangeScale& scale() const { return m_scale; }
    /// The text form of numbers; never null.
    void setNumberText(std::shared_ptr<const PNumberText> text);
    /// The minimum width in characters, so that fields below each other can be equally wide.
    void setLeastCharacters(int count);

    double value() const { return m_value; }
    /// Shows a value as it is and emits nothing; nothing for one that is not a number (NaN). Text
    /// being typed stays until it is committed.
    void showValue(double value);

    void stepBy(int steps) override;
    QValidator::State validate(QString& text, int& position) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    /// The user has entered another value.
    void valueEdited(double value);

protected:
    StepEnabled stepEnabled() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void commit();
    void edit(double value);
    void writeValue();
    QString toText(double value) const;

    PRangeScale m_scale;
    std::shared_ptr<const PNumberText> m_text;
    double m_value = 0;
    int m_leastCharacters = 10; ///< enough for "999.999 ms"
};
