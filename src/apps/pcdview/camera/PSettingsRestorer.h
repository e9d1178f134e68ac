// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfileReport.h>
#include <PCd/profile/PDeviceProfileValues.h>

#include <PCore/PStatus.h>

#include <QHash>
#include <QObject>
#include <QTimer>

class PDevice;

/// Keeps the settings of a camera while it is plugged in, as values, to restore them after it was
/// unplugged: then they can no longer be read. The device's thread.
class PSettingsRestorer : public QObject {
    Q_OBJECT

public:
    explicit PSettingsRestorer(QObject* parent = nullptr);

    /// Keeps the settings of this linked device as they are now and after each change, until
    /// release().
    void follow(PDevice* device);
    /// Stops following a device that is about to go.
    void release();

    bool isEmpty() const { return m_values.isEmpty(); }
    /// Sets the kept settings on a device. Fails with the reason if none of them were sent; the
    /// outcome of each is in the report.
    PStatus restore(PDevice& device, PDeviceProfileReport& report) const;

private:
    void remember();
    void rememberExposure();
    void restoreExposure(PDevice& device, PDeviceProfileReport& report) const;
    void restoreValue(PDevice& device, const char* id, PDeviceProfileReport& report) const;

    PDevice* m_device = nullptr;
    PDeviceProfileValues m_values;
    QHash<QByteArray, QVariant> m_exposure; ///< values of plain properties, by their ids
    QTimer m_later;
};
