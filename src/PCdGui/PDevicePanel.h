// SPDX-License-Identifier: MIT
#pragma once

#include <PGui/PColumnScroll.h>

#include <PCd/device/PDevice.h>

#include <QList>
#include <QPointer>
#include <QStringList>

class PDeviceProperty;
class PPropertyGroupPanel;
class QLabel;
class QVBoxLayout;

/// All properties of a device in a column that scrolls: its groups in their order, those without
/// members left out, then what is in no group. The device may die first. The GUI thread.
class PDevicePanel : public PColumnScroll {
    Q_OBJECT

public:
    explicit PDevicePanel(PDevice* device, QWidget* parent = nullptr);
    ~PDevicePanel() override;

    /// Shows only the properties with all words of the text in their title, id or description or in
    /// what their editors and panels show, and only groups with such. An empty text shows all. It
    /// is applied again when the language changes, which titles and descriptions follow.
    void setFilter(const QString& text);

signals:
    /// The device refused what the user had chosen for the property with this title, and kept this,
    /// in words; empty if it has none. Of the editors, not of panels that properties bring.
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
