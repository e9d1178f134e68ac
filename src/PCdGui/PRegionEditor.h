// SPDX-License-Identifier: MIT
#pragma once

#include <PCdGui/PPropertyEditor.h>

#include <PCd/PScanAreaRange.h>

class PNumberField;
class QGridLayout;
class QPushButton;

/// Four fields for a region of the sensor, and a button for all of it. Each edit is one set; where
/// a new corner leaves too little room, the region becomes smaller.
class PRegionEditor : public PPropertyEditor {
    Q_OBJECT

public:
    explicit PRegionEditor(PDeviceProperty* property);

protected:
    void showProperty(const QVariant& value, const QVariant& range) override;

private:
    PNumberField* addField(QGridLayout* layout, int row, int column, const QString& title);
    QRect shown() const;
    void showRegion(const QRect& region);
    void moveCorner();
    void sendShown();
    void sendWhole();

    PScanAreaRange m_range;
    PNumberField* m_x; // children
    PNumberField* m_y;
    PNumberField* m_width;
    PNumberField* m_height;
    QPushButton* m_whole;
};
