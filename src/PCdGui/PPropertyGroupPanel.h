// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <QList>
#include <QPointer>

class PDeviceProperty;
class PDeviceTexts;
class PPropertyEditor;
class PPropertyLabel;
class QFormLayout;

/// A titled form of editors, one row a property. A property without a title, or with a panel of its
/// own, has the whole row. The properties may die first. The GUI thread.
class PPropertyGroupPanel : public QGroupBox {
    Q_OBJECT

public:
    PPropertyGroupPanel(const QString& title, const QList<PDeviceProperty*>& properties,
                        QWidget* parent = nullptr);
    ~PPropertyGroupPanel() override;

    /// Shows only rows with all words of the text, whatever their case, in the title, id or
    /// description or in what the editor or panel shows; a property without a title goes by the
    /// group's. True if any row is shown.
    bool setFilter(const QString& text);

    /// Shows the titles and descriptions that the device has now, and the group's own title; what
    /// has no text there stays as it is.
    void setTexts(const QString& groupTitle, const PDeviceTexts& texts);

    /// The width of the widest title, in pixels, and the width that all titles get: panels above
    /// each other look better with one.
    int titleWidth() const;
    void setTitleWidth(int width);

signals:
    /// A property's editor said so, see PPropertyEditor; one without a title goes by the group's.
    void refused(const QString& title, const QString& kept);

private:
    struct Row {
        QPointer<QWidget> editor;
        PPropertyLabel* title; ///< null if the editor has the whole row
        QByteArray id;
        QString words; ///< of the property itself
    };

    bool isBeside(const Row& row) const;
    static QString wordsIn(const Row& row);
    void addRow(PDeviceProperty* property);
    void followEditor(const PPropertyEditor* editor);
    void addTitled(QWidget* title, PPropertyEditor* editor);

    QFormLayout* m_form;
    QList<Row> m_rows;
};
