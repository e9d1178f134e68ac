// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/editor/PPropertyEditor.h>

#include <PCore/PExport.h>

class PRangeWidget;

/// A slider and a field for a whole number; times are shown in the most suitable unit. Without a
/// range there is only the field.
class PCD_TEST_EXPORT PNumberEditor : public PPropertyEditor {
    Q_OBJECT

public:
    explicit PNumberEditor(PDeviceProperty* property);

protected:
    void showProperty(const QVariant& value, const QVariant& range) override;
    void showWords() override;

private:
    PRangeWidget* m_control; // child
};
