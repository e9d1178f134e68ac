// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/value/PRole.h>

#include <PCore/PExport.h>

#include <QGroupBox>
#include <QList>
#include <QPointer>

#include <functional>

class PDeviceProperty;
class PDeviceTexts;
class PPropertyEditor;
class PPropertyLabel;
class QFormLayout;

/// A titled form of editors, one row per property. A property without a title, or with its own
/// panel, has the whole row. The properties may be deleted first. The GUI thread.
class PCD_EXPORT PPropertyGroupPanel : public QGroupBox {
    Q_OBJECT

public:
    PPropertyGroupPanel(const QString& title, const QList<PDeviceProperty*>& properties,
                        QWidget* parent = nullptr);
    ~PPropertyGroupPanel() override;

    /// Shows only rows with all words of the text (ignoring case) in the title, id or description
    /// or in the texts of the editor or panel; for a property without a title the group's title is
    /// used. True if any row is shown.
    bool setFilter(const QString& text);

    /// Shows these titles and descriptions, and the group's title; texts that are missing there
    /// stay as they are.
    void setTexts(const QString& groupTitle, const PDeviceTexts& texts);

    /// See PDevicePanel.
    void setCondition(const QList<PRole>& roles,
                      const std::function<bool(const PDeviceProperty& property,
                                               const QVariant& value)>& condition);

    /// The width of the widest title, in pixels, and the width given to all titles, so that panels
    /// above each other line up.
    int titleWidth() const;
    void setTitleWidth(int width);

signals:
    /// Forwarded from PPropertyEditor; for a property without a title, the group's title.
    void refused(const QString& title, const QString& kept);

protected:
    void paintEvent(QPaintEvent* event) override;

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
