// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameStamp.h>

#include <QList>

#include <functional>
#include <memory>

class PDeviceProperty;
class PFramePipeline;
class QObject;

/// The cached values of a device's properties as frames are stamped with them. The device's thread.
class PStampedValues {
public:
    /// All values, without a mode.
    static std::shared_ptr<PDeviceSettings> read(const QList<PDeviceProperty*>& properties);

    /// From now on puts what changes into the settings of the device's pipeline. Calls
    /// `makeSettings` at a change if there are none yet.
    static void follow(QObject& device, const QList<PDeviceProperty*>& properties,
                       PFramePipeline& frames, const std::function<void()>& makeSettings);
};
