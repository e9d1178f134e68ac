// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>

#include <optional>

/// How a field writes numbers, and reads what is typed: a plain number, with a unit after it if it
/// has one. Stateless; the GUI thread.
class PNumberText {
public:
    /// The unit is written after the number: " %" or " °C".
    explicit PNumberText(QString unit = {});
    virtual ~PNumberText();

    /// The text of a value, with at least this many decimals, and those that the value itself has.
    virtual QString toText(double value, int decimals, const QLocale& locale) const;
    /// The value that a text means while `shown` is the value shown. With or without the unit, with
    /// the locale's decimal sign or a point. Nothing if it is not a number.
    virtual std::optional<double> toValue(const QString& text, double shown,
                                          const QLocale& locale) const;
    /// The letters that a text may have; other letters cannot be typed.
    virtual QString letters() const;

protected:
    /// A finite number in the locale's form, or with a decimal point.
    static std::optional<double> parseNumber(const QString& text, const QLocale& locale);
    /// The locale, without separators between thousands, which users do not type.
    static QLocale plain(QLocale locale);

private:
    QString m_unit;
};
