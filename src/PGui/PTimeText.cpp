// SPDX-License-Identifier: MIT
#include <PGui/PTimeText.h>

#include <QStringList>

#include <cmath>
#include <iterator>

namespace {

struct Unit {
    double microseconds;
    const char* name;         ///< as written, translatable
    const char* spellings[3]; ///< other accepted spellings, UTF-8
};

// Longer names first: "ms" ends in "s" too. The micro sign has two code points, U+00B5 and U+03BC.
constexpr Unit units[] = {
    {1, QT_TRANSLATE_NOOP("PTimeText", "µs"), {"us", "\u00b5s", "\u03bcs"}},
    {1e3, QT_TRANSLATE_NOOP("PTimeText", "ms"), {"ms"}},
    {1e6, QT_TRANSLATE_NOOP("PTimeText", "s"), {"s"}},
};

/// The largest unit in which the value is at least one.
const Unit& unitFor(double value) {
    const Unit* best = &units[0];
    for (const Unit& unit : units) {
        if (std::abs(value) >= unit.microseconds)
            best = &unit;
    }
    return *best;
}

QStringList allNames(const Unit& unit) {
    QStringList names{PTimeText::tr(unit.name)};
    for (const char* spelling : unit.spellings) {
        if (spelling != nullptr)
            names.append(QString::fromUtf8(spelling));
    }
    return names;
}

/// Removes the unit from the end of the text; null if there is none.
const Unit* takeUnit(QString* text) {
    for (const Unit& unit : units) {
        for (const QString& name : allNames(unit)) {
            if (text->endsWith(name, Qt::CaseInsensitive)) {
                text->chop(name.size());
                return &unit;
            }
        }
    }
    return nullptr;
}

} // namespace

QString PTimeText::toText(double value, int, const QLocale& locale) const {
    const Unit& unit = unitFor(value);
    const QString number =
        plain(locale).toString(value / unit.microseconds, 'f', QLocale::FloatingPointShortest);
    return number + u' ' + tr(unit.name);
}

std::optional<double> PTimeText::toValue(const QString& text, double shown,
                                         const QLocale& locale) const {
    QString number = text.trimmed();
    const Unit* const typed = takeUnit(&number);
    const Unit& unit = typed != nullptr ? *typed : unitFor(shown);
    const std::optional<double> count = parseNumber(number.trimmed(), locale);
    if (!count)
        return std::nullopt;
    return *count * unit.microseconds;
}

QString PTimeText::letters() const {
    QString all;
    for (const Unit& unit : units)
        all += allNames(unit).join(QString());
    return all;
}
