// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QVariant>

#include <memory>

class PDeviceProperty;
class PNumberText;

/// The texts that editors show about properties, translated. The GUI thread.
class PPropertyDisplay {
    Q_DECLARE_TR_FUNCTIONS(PPropertyDisplay)

public:
    /// The text form of the property's numbers: times with a unit, others plain. Never null.
    static std::shared_ptr<const PNumberText> numberText(const PDeviceProperty& property);
    /// A value of the property as text: "12.5 ms", "on", "Add 2x2"; a choice by its title in this
    /// range. Empty if it has no text.
    static QString valueText(const PDeviceProperty& property, const QVariant& range,
                             const QVariant& value);
    /// The description, this range and the default, as far as they exist, and that the value is not
    /// known, as rich text.
    static QString toolTip(const PDeviceProperty& property, const QVariant& range,
                           const QString& description);
    /// A title for widgets that treat "&" as a shortcut mark.
    static QString plainTitle(QString title);

private:
    static QString rangeText(const PDeviceProperty& property, const QVariant& range);
};
