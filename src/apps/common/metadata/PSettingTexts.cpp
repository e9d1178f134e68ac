// SPDX-License-Identifier: MIT
#include <apps/common/metadata/PSettingTexts.h>

#include <apps/common/camera/PCaptureMode.h>
#include <apps/common/camera/PFrameExposure.h>
#include <apps/common/camera/PSettingNames.h>

#include <PCd/frame/PFrameStamp.h>
#include <PCd/property/value/PCompositeFields.h>
#include <PCd/property/value/PPropertyText.h>

#include <algorithm>
#include <iterator>

namespace {

/// How a setting, or "setting.field", is shown.
struct Description {
    const char* id;
    const char* title; ///< null: written by something else
    const char* unit = "";
    double factor = 1;               ///< of the number as the camera has it, to that unit
    const char* names = nullptr;     ///< of the numbers from 0 on, with blanks between them
    bool isOfTrigger = false;        ///< means something for triggered frames only
    const char* unitOfOne = nullptr; ///< where it differs
};

constexpr Description descriptions[]{
    {"extexposure.exp", nullptr},
    {"extexposure.gain", nullptr},
    {"extexposure.autoexpenabled", nullptr},
    {"extexposure.minutes", nullptr},
    {"extexposure.seconds", nullptr},
    {"extexposure.milliseconds", nullptr},
    {"extexposure.microseconds", nullptr},
    {"extexposure.target", "Exposure target"},
    {"extexposure.spincount", "Trigger sequence", " frames", 1, nullptr, true, " frame"},
    {"extexposure.triggermode", "Trigger source", "", 1, "software external", true},
    {"extexposure.capturemode", "Capture", "", 1, "video triggered"},
    {"autoexponeable", nullptr},
    {"autoexpottime", nullptr},
    {"autoexpogain", nullptr},
    {"autoexpotarget", "Exposure target"},
    {"tint", "White balance tint"},
    {"temp", "White balance temperature"},
    {"wbgain", "White balance gain"},
    {"contrast", "Contrast"},
    {"hue", "Hue"},
    {"saturation", "Saturation"},
    {"brightness", "Brightness"},
    {"gamma", "Gamma"},
    {"chrome", "Chrome"},
    {"negative", "Negative"},
    {"colormatrix", "Color matrix"},
    {"binning", "Binning"},
    {"rotate", "Rotation", "°"},
    {"vflip", "Vertical flip"},
    {"hflip", "Horizontal flip"},
    {"roi", "Region", " px"},
    {"speed", "Speed level"},
    {"backlight", "Backlight compensation"},
    {"teccontrol.on", "Cooler", "", 1, "off on"},
    {"teccontrol.target", "Cooler target", " °C", 0.1},
    {"fan.enable", "Fan", "", 1, "off on"},
    {"fan.target", "Fan speed level"},
};

const Description* find(const QByteArray& id) {
    const auto* const found =
        std::find_if(std::begin(descriptions), std::end(descriptions),
                     [&](const Description& description) { return id == description.id; });
    return found == std::end(descriptions) ? nullptr : found;
}

QString choiceName(const Description& description, const QVariant& value) {
    const QStringList names =
        QString::fromLatin1(description.names).split(u' ', Qt::SkipEmptyParts);
    return names.value(value.toInt());
}

QString toText(const Description& description, const QVariant& value) {
    if (const QString name = choiceName(description, value); !name.isEmpty())
        return name;
    const QString text = description.factor == 1
                             ? PPropertyText::ofValue(value, QVariant())
                             : QString::number(value.toDouble() * description.factor);
    const bool isOne = description.unitOfOne != nullptr && text == u"1"_qs;
    return text + QString::fromUtf8(isOne ? description.unitOfOne : description.unit);
}

class Texts {
public:
    explicit Texts(bool areTriggered)
        : m_areTriggered(areTriggered) {}

    void append(const QByteArray& id, const QVariant& value) {
        const Description* const description = find(id);
        if (description == nullptr)
            add(u"Setting "_qs + QString::fromLatin1(id),
                PPropertyText::ofValue(value, QVariant()));
        else if (description->title != nullptr && (m_areTriggered || !description->isOfTrigger))
            add(QString::fromLatin1(description->title), toText(*description, value));
    }
    /// Does nothing if the key is there already: a record repeats plain settings.
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

/// A fan that could not be read has this state.
bool isUnknownFan(const QByteArray& id, const QVariant& value) {
    return id == "fan" && PCompositeFields::read(value, u"enable"_qs) == -1;
}

void appendFields(Texts& texts, const QByteArray& id, const QVariant& value) {
    for (const QString& field : PCompositeFields::names(value))
        texts.append(id + '.' + field.toLatin1(), PCompositeFields::read(value, field));
}

} // namespace

PPictureMetadata PSettingTexts::of(const PDeviceSettings& settings) {
    Texts texts(PCaptureMode::isTriggered(settings));
    const PFrameExposure exposure = PFrameExposure::of(settings, {});
    if (exposure.gain)
        texts.add(u"Gain"_qs, exposure.gainText());
    for (const auto& [id, value] : settings.values) {
        if (value.isValid() && !PCompositeFields::isComposite(value)) // an action has none
            texts.append(id, value);
    }
    for (const auto& [id, value] : settings.values) {
        if (PCompositeFields::isComposite(value) && !isUnknownFan(id, value))
            appendFields(texts, id, value);
    }
    return texts.list;
}
