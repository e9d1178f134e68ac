// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>

#include <PCore/PStatus.h>

#include <QList>
#include <QStringList>
#include <QVariant>

#include <functional>

class PDevice;
class PDeviceProperty;

/// The settings that a camera had before a check, to be set back. The device's thread.
class PCheckSettings {
public:
    /// Called after each property that was read or set: the driver has returned.
    using Returned = std::function<void()>;

    explicit PCheckSettings(Returned returned);

    /// True if a check may set the property: not a command, not a reading such as a temperature,
    /// and not what warms or cools the camera.
    static bool maySet(const PDeviceProperty& property);

    /// Takes the present mode and values from the camera. Values that it does not report are left
    /// out. Fails if it does not report its mode.
    PStatus take(PDevice& device);
    /// True if the value of the property with this index was taken, so that it can be set back.
    bool has(qsizetype index) const;
    /// Sets what differs back: not the mode.
    void putBack(PDevice& device) const;
    /// Sets the mode back.
    void putModeBack(PDevice& device) const;
    /// Which settings to compare: all, or those that files have.
    enum Which { All, Saved };
    /// What still differs, one text for each setting.
    QStringList differences(PDevice& device, Which which) const;

private:
    struct Setting {
        qsizetype index; ///< of the property; ids of a driver may repeat
        QVariant value;
    };

    Returned m_returned;
    PDeviceMode m_mode;
    QList<Setting> m_settings;
};
