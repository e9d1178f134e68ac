// SPDX-License-Identifier: MIT
#include <apps/pcdctl/completion/PCameraCandidates.h>

#include <apps/pcdctl/completion/PPropertyCandidates.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <QScopeGuard>

#include <algorithm>
#include <utility>

PCameraCandidates::PCameraCandidates(const PCtlOptions& options)
    : m_camera(options.camera)
    , m_isStarted(m_host.start(options).isDone()) {
}

PCandidates PCameraCandidates::cameras() {
    PCandidates candidates;
    if (!m_isStarted)
        return candidates;
    for (const PDevice* device : m_host.manager().devices()) {
        const PCameraIdentity camera = m_host.identify(device);
        candidates.append(
            {camera.id, camera.simulated ? camera.model + u" (simulated)"_qs : camera.model});
    }
    return candidates;
}

PCandidates PCameraCandidates::modes() {
    return withDevice([](PDevice& device) {
        QList<PDeviceMode> modes;
        device.readModes(modes);
        PCandidates candidates;
        for (const PDeviceMode& mode : std::as_const(modes)) {
            const auto isNamesake = [&](const PDeviceMode& m) { return m.name == mode.name; };
            const bool isUnique = std::count_if(modes.begin(), modes.end(), isNamesake) == 1;
            const QString id = QString::fromLatin1(mode.id);
            candidates.append({isUnique ? mode.name : id,
                               u"mode %1, %2 x %3 pixels, %4 bits"_qs.arg(
                                   id, QString::number(mode.width), QString::number(mode.height),
                                   QString::number(mode.bitDepth))});
        }
        return candidates;
    });
}

PCandidates PCameraCandidates::properties() {
    return withProperties(PPropertyCandidates::id);
}

PCandidates PCameraCandidates::propertiesWithDefaults() {
    return withProperties([](const PDeviceProperty& property) {
        return property.defaultValue().isValid() ? PPropertyCandidates::id(property)
                                                 : PCandidates();
    });
}

PCandidates PCameraCandidates::settings(const QString& typed) {
    const qsizetype sign = typed.indexOf(u'=');
    if (sign < 0)
        return withProperties(PPropertyCandidates::settings);
    return withProperties([name = typed.left(sign)](const PDeviceProperty& property) {
        return PPropertyCandidates::values(property, name);
    });
}

PCandidates PCameraCandidates::withDevice(const std::function<PCandidates(PDevice&)>& collect) {
    if (!m_isStarted)
        return {};
    const PCtlHost::Choice choice = m_host.choose(m_camera);
    return choice.device == nullptr ? PCandidates() : collect(*choice.device);
}

PCandidates PCameraCandidates::withProperties(
    const std::function<PCandidates(const PDeviceProperty&)>& collect) {
    return withDevice([&](PDevice& device) {
        PCandidates candidates;
        if (!device.link().isOk())
            return candidates;
        const auto close = qScopeGuard([&] { device.unlink(); });
        for (const PDeviceProperty* property : device.supportProperties())
            candidates += collect(*property);
        return candidates;
    });
}
