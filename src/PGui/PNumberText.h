// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QLocale>
#include <QString>

#include <optional>

/// The text form of a field's numbers: a plain number, followed by a unit if it has one. Stateless;
/// the GUI thread.
class PCD_EXPORT PNumberText {
public:
    /// The unit is written after the number: " %" or " °C".
    explicit PNumberText(QString unit = {});
    virtual ~PNumberText();

    /// The text of a value, with at least this number of decimals, and more if the value needs
    /// them.
    virtual QString toText(double value, int decimals, const QLocale& locale) const;
    /// The value of a text, with or without the unit, with the locale's decimal sign or a point.
    /// `shown` is the displayed value. Nothing if it is not a number.
    virtual std::optional<double> toValue(const QString& text, double shown,
                                          const QLocale& locale) const;
    /// The letters allowed in a text; others cannot be typed.
    virtual QString letters() const;

protected:
    /// A finite number in the locale's form, or with a decimal point.
    static std::optional<double> parseNumber(const QString& text, const QLocale& locale);
    /// The locale, without thousands separators, which users do not type.
    static QLocale plain(QLocale locale);

private:
    QString m_unit;
};
