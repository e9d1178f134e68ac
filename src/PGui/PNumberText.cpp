// SPDX-License-Identifier: MIT
#include <PGui/PNumberText.h>

#include <PGui/PRangeScale.h>

#include <algorithm>
#include <cmath>

PNumberText::PNumberText(QString unit)
    : m_unit(std::move(unit)) {
}

PNumberText::~PNumberText() = default;

QString PNumberText::toText(double value, int decimals, const QLocale& locale) const {
    const int precision = std::max(decimals, PRangeScale::countDecimals(value));
    return plain(locale).toString(value, 'f', precision) + m_unit;
}

std::optional<double> PNumberText::toValue(const QString& text, double,
                                           const QLocale& locale) const {
    QString number = text.trimmed();
    const QString unit = m_unit.trimmed();
    if (!unit.isEmpty() && number.endsWith(unit, Qt::CaseInsensitive))
        number.chop(unit.size());
    return parseNumber(number.trimmed(), locale);
}

QString PNumberText::letters() const {
    return m_unit;
}

std::optional<double> PNumberText::parseNumber(const QString& text, const QLocale& locale) {
    bool isNumber = false;
    double number = plain(locale).toDouble(text, &isNumber);
    if (!isNumber)
        number = plain(QLocale::c()).toDouble(text, &isNumber);
    if (!isNumber || !std::isfinite(number))
        return std::nullopt;
    return number;
}

QLocale PNumberText::plain(QLocale locale) {
    locale.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    return locale;
}
