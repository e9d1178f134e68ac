// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/editor/PPropertyEditor.h>

#include <PCore/PExport.h>

class QPushButton;

/// A button for a one-shot command: one click, one command.
class PCD_TEST_EXPORT PActionEditor : public PPropertyEditor {
    Q_OBJECT

public:
    explicit PActionEditor(PDeviceProperty* property);

    bool showsTitle() const override { return true; }

protected:
    void showProperty(const QVariant& value, const QVariant& range) override;
    void showWords() override;

private:
    void run();

    QPushButton* m_button; // a child
};
