// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/PEnumeration.h>

#include <QByteArray>
#include <QHash>
#include <QString>

class PDevice;

/// The names of a device's properties, their choices and its groups in the current language; the
/// device's own objects keep the language in which they were created. The device's thread.
class PDeviceTexts {
public:
    /// The texts of one property.
    struct Texts {
        QString title;
        QString description;
        PEnumeration choices; ///< of a choice; else empty
    };

    /// Makes the device create its properties and groups once more, and deletes them after reading
    /// their texts. The device must be linked.
    explicit PDeviceTexts(PDevice& device);

    /// Empty texts if the device has no such property or group.
    Texts ofProperty(const QByteArray& id) const { return m_properties.value(id); }
    QString ofGroup(const QString& id) const { return m_groups.value(id); }

private:
    QHash<QByteArray, Texts> m_properties;
    QHash<QString, QString> m_groups;
};
