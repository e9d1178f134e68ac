// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PEnumeration.h>

#include <QByteArray>
#include <QHash>
#include <QString>

class PDevice;

/// What a device calls its properties, their choices and its groups in the language of the moment:
/// those that it has keep the language in which they were made. The device's thread.
class PDeviceTexts {
public:
    /// The texts of one property.
    struct Texts {
        QString title;
        QString description;
        PEnumeration choices; ///< of a choice; else empty
    };

    /// Has the device make properties and groups once more, and drops them. The device must be
    /// linked.
    explicit PDeviceTexts(PDevice& device);

    /// Empty texts where the device has no such property or group.
    Texts ofProperty(const QByteArray& id) const { return m_properties.value(id); }
    QString ofGroup(const QString& id) const { return m_groups.value(id); }

private:
    QHash<QByteArray, Texts> m_properties;
    QHash<QString, QString> m_groups;
};
