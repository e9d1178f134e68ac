// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PNumberText.h>

#include <PCore/PExport.h>

#include <QCoreApplication>

/// Times in microseconds, written in the most suitable unit: "150 µs", "12.5 ms", "3 s". Reads any
/// of these units, "us" too; a number without a unit is in the unit shown.
class PCD_EXPORT PTimeText : public PNumberText {
    Q_DECLARE_TR_FUNCTIONS(PTimeText)

public:
    QString toText(double value, int decimals, const QLocale& locale) const override;
    std::optional<double> toValue(const QString& text, double shown,
                                  const QLocale& locale) const override;
    QString letters() const override;
};
