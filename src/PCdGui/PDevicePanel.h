// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PColumnScroll.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/value/PRole.h>

#include <PCore/PExport.h>

#include <QList>
#include <QPointer>
#include <QStringList>

#include <functional>

class PDeviceProperty;
class PPropertyGroupPanel;
class QLabel;
class QVBoxLayout;

/// All properties of a device in a column that scrolls: its groups in order, without empty ones,
/// then the properties that are in no group. The device may be deleted first. The GUI thread.
class PCD_EXPORT PDevicePanel : public PColumnScroll {
    Q_OBJECT

public:
    explicit PDevicePanel(PDevice* device, QWidget* parent = nullptr);
    ~PDevicePanel() override;

    /// Shows only the properties with all words of the text in their title, id or description or in
    /// the texts of their editors and panels, and only groups with such properties. An empty text
    /// shows all. Applied again when the language changes, as titles and descriptions change with
    /// it.
    void setFilter(const QString& text);
    /// Called before the editor of a property with one of these roles sends another value than the
    /// property's; if it returns false, the editor shows the property's value again. It may ask the
    /// user. Not called for properties' own panels.
    void setCondition(const QList<PRole>& roles,
                      const std::function<bool(const PDeviceProperty& property,
                                               const QVariant& value)>& condition);

signals:
    /// The device refused the value that the user chose for the property with this title, and kept
    /// the value `kept` (as text; empty if it has none). Emitted for editors, not for properties'
    /// own panels.
    void refused(const QString& title, const QString& kept);

protected:
    bool event(QEvent* event) override;

private:
    QLabel* addNotice(const QString& text);
    void addGroups(PDevice* device);
    void addGroup(const QString& id, const QString& title,
                  const QList<PDeviceProperty*>& properties);
    void translate();
    void alignTitles();

    QWidget* m_page; // children
    QVBoxLayout* m_column;
    QLabel* m_unusable;
    QLabel* m_nothing;
    QList<PPropertyGroupPanel*> m_groups;
    QStringList m_groupIds; ///< of m_groups; empty: the rest
    QPointer<PDevice> m_device;
    QString m_filter;
};
