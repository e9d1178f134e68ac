// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/editor/PPropertyEditor.h>

#include <PCore/PExport.h>

class QCheckBox;

/// A check box for a switch.
class PCD_TEST_EXPORT PSwitchEditor : public PPropertyEditor {
    Q_OBJECT

public:
    explicit PSwitchEditor(PDeviceProperty* property);

    /// A click on the title clicks the box.
    void touch() override;

protected:
    void showProperty(const QVariant& value, const QVariant& range) override;
    void showWords() override;

private:
    QCheckBox* m_box; // child
};
