// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfile.h>
#include <PCd/profile/PDeviceProfileReport.h>

#include <PCore/PStatus.h>

#include <QHash>
#include <QObject>
#include <QTimer>

class PDevice;

/// Remembers the settings of a camera while it is there, so that it can have them back after it was
/// unplugged: then it is too late to ask. The device's thread.
class PSettingsRestorer : public QObject {
    Q_OBJECT

public:
    explicit PSettingsRestorer(QObject* parent = nullptr);

    /// Remembers the settings of this linked device as they are now and as they become, until
    /// release().
    void follow(PDevice* device);
    /// Stops following, for a device about to go.
    void release();

    bool isEmpty() const { return m_profile.settings.isEmpty(); }
    /// Gives a device the settings that are remembered. Fails with the reason if none of them were
    /// sent; what single ones have come to is in the report.
    PStatus restore(PDevice& device, PDeviceProfileReport& report) const;

private:
    void remember();
    void rememberExposure();
    void restoreExposure(PDevice& device, PDeviceProfileReport& report) const;
    void restoreValue(PDevice& device, const char* id, PDeviceProfileReport& report) const;

    PDevice* m_device = nullptr;
    PDeviceProfile m_profile;
    QHash<QByteArray, QVariant> m_exposure; ///< values of plain properties, by their ids
    QTimer m_later;
};
