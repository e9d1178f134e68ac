// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QVariant>

#include <memory>

class PDeviceProperty;
class PNumberText;

/// What editors show about properties, translated. The GUI thread.
class PPropertyDisplay {
    Q_DECLARE_TR_FUNCTIONS(PPropertyDisplay)

public:
    /// How numbers of the property are written: times in their unit, others plain. Never null.
    static std::shared_ptr<const PNumberText> numberText(const PDeviceProperty& property);
    /// A value of the property: "12.5 ms", "on", "Add 2x2", by the title it has in this range.
    /// Empty if it has no words.
    static QString valueText(const PDeviceProperty& property, const QVariant& range,
                             const QVariant& value);
    /// The description, and this range and the default as far as there are any, as rich text.
    static QString toolTip(const PDeviceProperty& property, const QVariant& range,
                           const QString& description);
    /// A title for widgets that take "&" as the mark of a shortcut.
    static QString plainTitle(QString title);

private:
    static QString rangeText(const PDeviceProperty& property, const QVariant& range);
};
