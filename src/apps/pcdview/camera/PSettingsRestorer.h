// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/profile/PDeviceProfileReport.h>
#include <PCd/profile/PDeviceProfileValues.h>
#include <PCd/property/value/PRole.h>

#include <PCore/PStatus.h>

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <map>

class PDevice;
class PDeviceProperty;

/// Keeps the settings of a camera while it is plugged in, as values, to restore them after it was
/// unplugged: then they can no longer be read. The device's thread.
class PSettingsRestorer : public QObject {
    Q_OBJECT

public:
    explicit PSettingsRestorer(QObject* parent = nullptr);

    /// Keeps the present settings of this linked device, and those after each change, until
    /// release(). A setting that the last restore() did not bring back stays as it was kept until
    /// it is set.
    void follow(PDevice* device);
    /// Stops following the device, which is about to be removed.
    void release();

    bool isEmpty() const { return m_values.isEmpty(); }
    /// Sets the kept settings on a device. Fails with the reason if none of them were sent; the
    /// outcome of each is in the report.
    PStatus restore(PDevice& device, PDeviceProfileReport& report);

private:
    void followProperty(PDeviceProperty* property);
    void rememberSoon();
    void hold(const PDeviceProfileReport& report);
    void holdAll(const PDevice& device);
    void findExposure();
    void remember();
    bool isReadable() const;
    void rememberExposure();
    void restoreExposure(PDevice& device, PDeviceProfileReport& report) const;
    void restoreValue(PDevice& device, PRole role, PDeviceProfileReport& report) const;

    QPointer<PDevice> m_device;
    PDeviceProfileValues m_values;
    bool m_isModeRead = false;            ///< the mode in them is the present one
    QSet<QByteArray> m_held;              ///< of what was not restored, "mode" among them
    std::map<PRole, QVariant> m_exposure; ///< values of the plain properties below
    // Of the device, found once; null if it has none.
    std::map<PRole, const PDeviceProperty*> m_plain; ///< exposure that is in no profile
    const PDeviceProperty* m_exposureTime = nullptr;
    const PDeviceProperty* m_captureMode = nullptr;
    QTimer m_later;
};
