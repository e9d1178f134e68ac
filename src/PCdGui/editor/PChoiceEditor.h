// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/editor/PPropertyEditor.h>

#include <PCd/PEnumeration.h>

#include <PCore/PExport.h>

class QComboBox;

/// A combo box for a choice.
class PCD_TEST_EXPORT PChoiceEditor : public PPropertyEditor {
    Q_OBJECT

public:
    explicit PChoiceEditor(PDeviceProperty* property);

protected:
    void showProperty(const QVariant& value, const QVariant& range) override;
    void showWords() override;

private:
    void showChoices(const PEnumeration& choices);

    PEnumeration m_choices;
    QComboBox* m_box; // child
};
