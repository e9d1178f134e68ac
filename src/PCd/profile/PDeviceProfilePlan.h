// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>
#include <PCd/profile/PDeviceProfile.h>
#include <PCd/profile/PDeviceProfileReport.h>

#include <PCore/PExport.h>
#include <PCore/PStatus.h>

#include <QCoreApplication>
#include <QVariant>

#include <optional>

class PDevice;
class PDeviceProperty;

/// Applies a profile to one device: checks all of it first, then sends it. The device's thread; the
/// device must outlive this.
class PCD_EXPORT PDeviceProfilePlan {
    Q_DECLARE_TR_FUNCTIONS(PDeviceProfilePlan)

public:
    /// Whether the profile's mode is set too.
    enum class Mode {
        OfProfile,
        AsItIs, ///< the profile's mode is not set, nor is a region of another mode
    };

    explicit PDeviceProfilePlan(PDevice& device, Mode mode = Mode::OfProfile);

    /// Reads the device's settings of which the profile has a value, and checks each value against
    /// them; sends nothing. Fails with file, line and what was expected if a value, or a field of
    /// one, is of a type its property cannot have, or, in a profile of this model, if a value is
    /// outside its range; fails too if the device no longer answers. Values that this camera lacks
    /// or does not report, or that another model has different ranges for, and fields outside their
    /// ranges are not failures: see the report.
    PStatus make(const PDeviceProfile& profile);

    /// Sends, once, the values that make() accepted (none if it failed): the mode first, then the
    /// rest in PDeviceProfileOrder, reading each back from the device. Values that it did not take
    /// are in the report.
    PDeviceProfileReport apply();

private:
    struct Step {
        PDeviceProperty* property;
        QVariant value;
    };

    QList<PDeviceProperty*> properties() const;
    PStatus planMode();
    PStatus planSettings();
    PStatus planSetting(const PDeviceProfile::Setting& setting);
    PStatus planValue(const PDeviceProfile::Setting& setting, PDeviceProperty& property);
    PStatus checkFields(const PDeviceProfile::Setting& setting, const QVariant& current);
    PStatus checkField(const PDeviceProfile::Setting& field, const QString& name,
                       const QVariant& current);
    PStatus refuse(const PDeviceProfile::Setting& setting, const QString& reason);
    PStatus damage(const PDeviceProfile::Setting& setting, const QString& reason) const;
    void sortSteps();
    void noteOrigin();
    bool applyMode();
    void applyStep(const Step& step);
    QVariant rangeInMode(const PDeviceProperty& property) const;
    bool isOtherMode() const;
    bool hasLostMode() const;

    PDevice& m_device;
    const Mode m_modeUse;
    PDeviceProfile m_profile;
    PDeviceMode m_currentMode;
    std::optional<PDeviceMode> m_mode; ///< of the profile, if this device has it
    bool m_isSameModel = false;
    QList<Step> m_steps;
    PDeviceProfileReport m_report;
};
