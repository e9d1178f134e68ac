// SPDX-License-Identifier: MIT
#include <apps/common/metadata/PSettingTexts.h>

#include <apps/common/camera/PFrameExposure.h>

#include <PCd/device/PDeviceRoles.h>
#include <PCd/frame/PFrameStamp.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <algorithm>
#include <iterator>

namespace {

/// The text form of a setting.
struct Description {
    PRole role;
    const char* title; ///< null: written by something else
    const char* unit = "";
    const char* names = nullptr;     ///< of the numbers from 0 on, with blanks between them
    bool isOfTrigger = false;        ///< means something for triggered frames only
    const char* unitOfOne = nullptr; ///< where it differs
};

constexpr Description descriptions[]{
    {PRole::ExposureTime, nullptr},
    {PRole::Gain, nullptr},
    {PRole::AutoExposure, nullptr},
    {PRole::ExposureTarget, "Exposure target"},
    {PRole::TriggerTime, nullptr},
    {PRole::TriggerCount, "Trigger sequence", " frames", nullptr, true, " frame"},
    {PRole::TriggerSource, "Trigger source", "", "software external", true},
    {PRole::Triggered, "Capture", "", "video triggered"},
    {PRole::SensorTemperature, "Sensor temperature", " °C"},
    {PRole::WhiteBalanceTint, "White balance tint"},
    {PRole::WhiteBalanceTemperature, "White balance temperature"},
    {PRole::WhiteBalanceGain, "White balance gain"},
    {PRole::Contrast, "Contrast"},
    {PRole::Hue, "Hue"},
    {PRole::Saturation, "Saturation"},
    {PRole::Brightness, "Brightness"},
    {PRole::Gamma, "Gamma"},
    {PRole::Monochrome, "Chrome"},
    {PRole::Negative, "Negative"},
    {PRole::ColourMatrix, "Color matrix"},
    {PRole::Binning, "Binning"},
    {PRole::Rotation, "Rotation", "°"},
    {PRole::FlipDown, "Vertical flip"},
    {PRole::FlipAcross, "Horizontal flip"},
    {PRole::Region, "Region", " px"},
    {PRole::SpeedLevel, "Speed level"},
    {PRole::BacklightCompensation, "Backlight compensation"},
    {PRole::CoolerOn, "Cooler", "", "off on"},
    {PRole::CoolerTarget, "Cooler target", " °C"},
    {PRole::FanOn, "Fan", "", "off on"},
    {PRole::FanLevel, "Fan speed level"},
};

const Description* find(PRole role) {
    const auto* const found =
        std::find_if(std::begin(descriptions), std::end(descriptions),
                     [&](const Description& description) { return role == description.role; });
    return found == std::end(descriptions) ? nullptr : found;
}

QString choiceName(const Description& description, const QVariant& value) {
    const QStringList names =
        QString::fromLatin1(description.names).split(u' ', Qt::SkipEmptyParts);
    return names.value(value.toInt());
}

QString toText(const Description& description, const PRoleBinding& binding, const QVariant& value) {
    if (const QString name = choiceName(description, value); !name.isEmpty())
        return name;
    const QString text = binding.unit == PRoleUnit::Own
                             ? PPropertyText::ofValue(value, QVariant())
                             : QString::number(binding.toRole(value.toDouble()));
    const bool isOne = description.unitOfOne != nullptr && text == u"1"_qs;
    return text + QString::fromUtf8(isOne ? description.unitOfOne : description.unit);
}

class Texts {
public:
    explicit Texts(bool areTriggered)
        : m_areTriggered(areTriggered) {}

    /// A setting with a role, or with none (null).
    void append(const QByteArray& id, const PRoleBinding* binding, const QVariant& value) {
        const Description* const description = binding == nullptr ? nullptr : find(binding->role);
        if (description == nullptr)
            add(u"Setting "_qs + QString::fromLatin1(id),
                PPropertyText::ofValue(value, QVariant()));
        else if (description->title != nullptr && (m_areTriggered || !description->isOfTrigger))
            add(QString::fromLatin1(description->title), toText(*description, *binding, value));
    }
    /// Does nothing if the key exists already: a record repeats plain settings.
    void add(const QString& key, const QString& text) {
        const bool isThere = std::any_of(list.begin(), list.end(),
                                         [&](const auto& there) { return there.first == key; });
        if (!isThere)
            list.append({key, text});
    }

    PPictureMetadata list;

private:
    bool m_areTriggered;
};

/// The binding of a field, or of the whole value if the name is empty; null if it has no role.
const PRoleBinding* findBinding(const PRoleBindings& bindings, const QByteArray& field) {
    const auto found =
        std::find_if(bindings.begin(), bindings.end(), [&](const PRoleBinding& binding) {
            return binding.method.isEmpty() && binding.field == field;
        });
    return found == bindings.end() ? nullptr : &*found;
}

void appendFields(Texts& texts, const PRoleValue& setting) {
    if (setting.number(PRole::FanOn).value_or(0) < 0) // it could not be read
        return;
    for (const QString& name : PCompositeFields::names(setting.value)) {
        const QByteArray field = name.toLatin1();
        texts.append(setting.id + '.' + field, findBinding(setting.bindings, field),
                     PCompositeFields::read(setting.value, name));
    }
}

} // namespace

PPictureMetadata PSettingTexts::of(const PDeviceSettings& settings) {
    const PDeviceRoles roles = PDeviceRoles::of(settings);
    Texts texts(roles.isOn(PRole::Triggered));
    const PFrameExposure exposure = PFrameExposure::of(roles);
    if (exposure.gain)
        texts.add(u"Gain"_qs, exposure.gainText());
    const QList<PRoleValue> values = PDeviceRoles::toValues(settings);
    for (const PRoleValue& setting : values) {
        // An action has no value.
        if (setting.value.isValid() && !PCompositeFields::isComposite(setting.value))
            texts.append(setting.id, findBinding(setting.bindings, {}), setting.value);
    }
    for (const PRoleValue& setting : values) {
        if (PCompositeFields::isComposite(setting.value))
            appendFields(texts, setting);
    }
    return texts.list;
}
