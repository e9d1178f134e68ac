// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class PDeviceProperty;

/// A titled, ordered group of properties that the host shows together. Does not own them. The
/// device's thread.
class PCD_EXPORT PDevicePropertyGroup : public QObject {
    Q_OBJECT

public:
    PDevicePropertyGroup(const QString& id, const QString& title);
    ~PDevicePropertyGroup() override;

    /// Appends a property; null, for one that the camera does not have, is ignored.
    void addProperty(PDeviceProperty* property);

    const QString& id() const { return m_id; }
    const QString& title() const { return m_title; }
    /// The members that still exist, in order.
    QList<PDeviceProperty*> properties() const;

private:
    QString m_id;
    QString m_title;
    QList<QPointer<PDeviceProperty>> m_properties;
};
