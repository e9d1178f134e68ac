// SPDX-License-Identifier: MIT
#include <reliability/PanelTruth.h>

#include <reliability/CallHook.h>

#include <PGui/PNumberField.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/value/PPropertyText.h>

#include <QCheckBox>
#include <QComboBox>
#include <QRect>
#include <QUuid>

#include <cmath>
#include <optional>

namespace {

constexpr qsizetype fieldsOfRegion = 4; // left, top, width, height

/// What the user sees: a value, or, if it is invalid, that there is none.
using Shown = std::optional<QVariant>;

QVariant readFields(const QList<PNumberField*>& fields) {
    QList<int> numbers;
    for (const PNumberField* field : fields) {
        if (std::isnan(field->value()) != field->text().isEmpty())
            return u"a number without its text, or a text without a number"_qs;
        if (field->text().isEmpty())
            return {};
        numbers.append(int(std::lround(field->value())));
    }
    return fields.size() == fieldsOfRegion
               ? QVariant(QRect(numbers[0], numbers[1], numbers[2], numbers[3]))
               : QVariant(numbers.first());
}

/// Nothing for an editor of another kind.
Shown readEditor(const QWidget& editor) {
    if (const auto* const box = editor.findChild<QCheckBox*>())
        return box->checkState() == Qt::PartiallyChecked ? QVariant() : QVariant(box->isChecked());
    if (const auto* const list = editor.findChild<QComboBox*>())
        return list->currentIndex() < 0 ? QVariant() : list->currentData();
    const auto fields = editor.findChildren<PNumberField*>();
    return fields.isEmpty() ? Shown() : Shown(readFields(fields));
}

/// The property that the editor has the title of; null if that is not unique.
PDeviceProperty* findProperty(const QWidget& editor, const PDevice& device) {
    PDeviceProperty* found = nullptr;
    for (PDeviceProperty* property : device.findChildren<PDeviceProperty*>()) {
        if (property->title() != editor.accessibleName())
            continue;
        if (found != nullptr)
            return nullptr;
        found = property;
    }
    return found;
}

/// An editor that can be compared.
struct Editor {
    PDeviceProperty* property;
    QVariant shown;
};

QList<Editor> findEditors(const QWidget& panel, const PDevice& device) {
    QList<Editor> editors;
    for (const QWidget* widget : panel.findChildren<QWidget*>()) {
        if (!widget->inherits("PPropertyEditor"))
            continue;
        PDeviceProperty* const property = findProperty(*widget, device);
        const Shown shown = readEditor(*widget);
        if (property != nullptr && shown)
            editors.append({property, *shown});
    }
    return editors;
}

QString describe(const PDeviceProperty& property, const QVariant& shown, const QVariant& value) {
    return u"%1 (%2 shown, %3 true)"_qs.arg(QString::fromLatin1(property.id()),
                                            PPropertyText::ofValue(shown, property.rangeInner()),
                                            PPropertyText::ofValue(value, property.rangeInner()));
}

} // namespace

QStringList PanelTruth::findLies(const QWidget& panel, PDevice& device) {
    const CallHook::Pause pause;
    QStringList lies;
    for (const Editor& editor : findEditors(panel, device)) {
        if (!editor.shown.isValid())
            continue;
        const QVariant value = editor.property->readFromDevice().value;
        if (editor.shown != value)
            lies.append(describe(*editor.property, editor.shown, value));
    }
    return lies;
}

int PanelTruth::countEditors(const QWidget& panel, const PDevice& device) {
    return int(findEditors(panel, device).size());
}
