// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/editor/PPropertyEditor.h>

#include <PCd/PScanAreaRange.h>

#include <PCore/PExport.h>

class PNumberField;
class QGridLayout;
class QLabel;
class QPushButton;

/// Four fields for a region of the sensor, and a button for all of it. Each edit sets the region
/// once; if a new corner leaves too little room, the region becomes smaller.
class PCD_TEST_EXPORT PRegionEditor : public PPropertyEditor {
    Q_OBJECT

public:
    explicit PRegionEditor(PDeviceProperty* property);

protected:
    void showProperty(const QVariant& value, const QVariant& range) override;
    void showWords() override;

private:
    struct Field {
        PNumberField* number; // children
        QLabel* label;
    };

    static Field addField(QGridLayout* layout, int row, int column);
    void name(const Field& field, const QString& word);
    QRect shown() const;
    void clearFields();
    void showRegion(const QRect& region);
    void moveCorner();
    void sendShown();
    void sendWhole();

    PScanAreaRange m_range;
    Field m_x;
    Field m_y;
    Field m_width;
    Field m_height;
    QPushButton* m_whole; // a child
};
