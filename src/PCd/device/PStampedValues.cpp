// SPDX-License-Identifier: MIT
#include <PCd/device/PStampedValues.h>

#include <PCd/PEnumeration.h>
#include <PCd/frame/PFramePipeline.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PPropertyRoles.h>
#include <PCd/property/value/PPropertyEncoding.h>

namespace {

using Properties = QList<PDeviceProperty*>;
using Places = QList<qsizetype>;

QVariant toStamped(const PDeviceProperty& property) {
    return PPropertyEncoding::named(property.reportedValue(), property.rangeInner());
}

/// Of composite values, and of values that are not known yet, which may turn out to be composite.
Places findComposites(const Properties& properties) {
    Places places;
    for (qsizetype place = 0; place < properties.size(); ++place) {
        const QVariant value = properties[place]->valueInner();
        if (!value.isValid() || PPropertyEncoding::isComposite(value))
            places.append(place);
    }
    return places;
}

bool isChoice(const PDeviceProperty& property) {
    return property.rangeInner().metaType() == QMetaType::fromType<PEnumeration>();
}

/// What all connections to the properties of a device need.
struct Following {
    Properties properties;
    Places composites;
    PFramePipeline& frames;
    std::function<void()> makeSettings;

    void renew(qsizetype changed) const {
        bool isComplete = false;
        frames.changeSettings([&](PDeviceSettings& settings) {
            isComplete = settings.values.size() == properties.size();
            if (isComplete)
                put(settings, changed);
        });
        if (!isComplete)
            makeSettings();
    }

    void put(PDeviceSettings& settings, qsizetype changed) const {
        // A plugin may change a cached composite value without a signal.
        for (const qsizetype place : composites) {
            const QVariant value = properties[place]->reportedValue();
            if (PPropertyEncoding::isComposite(value))
                settings.values[place].second = value;
        }
        settings.values[changed].second = toStamped(*properties[changed]);
    }
};

} // namespace

std::shared_ptr<PDeviceSettings> PStampedValues::read(const Properties& properties) {
    auto settings = std::make_shared<PDeviceSettings>();
    settings->values.reserve(properties.size());
    for (const PDeviceProperty* property : properties) {
        const PRoleValue value = PPropertyRoles::value(*property);
        settings->values.append({value.id, value.value});
        if (!value.bindings.isEmpty())
            settings->roles.insert(value.id, QVariant::fromValue(value.bindings));
    }
    return settings;
}

void PStampedValues::follow(QObject& device, const Properties& properties, PFramePipeline& frames,
                            const std::function<void()>& makeSettings) {
    const auto following = std::make_shared<const Following>(
        Following{properties, findComposites(properties), frames, makeSettings});
    for (qsizetype place = 0; place < properties.size(); ++place) {
        PDeviceProperty* const property = properties[place];
        const auto renew = [following, place] { following->renew(place); };
        QObject::connect(property, &PDeviceProperty::valueChanged, &device, renew);
        if (isChoice(*property)) // named in the stamp as its range has it
            QObject::connect(property, &PDeviceProperty::rangeChanged, &device, renew);
    }
}
