// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PSettingTitle.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>
#include <PCd/property/PDevicePropertyGroup.h>

namespace {

QString titleWithGroup(PDevice& device, PDeviceProperty& property) {
    if (!property.title().isEmpty())
        return property.title();
    for (const PDevicePropertyGroup* group : device.supportPropertyGroups()) {
        if (group->properties().contains(&property))
            return group->title();
    }
    return {};
}

} // namespace

QString PSettingTitle::of(PDevice* device, const QByteArray& id) {
    if (id == "mode")
        return tr("Resolution");
    const QByteArray ofProperty = id.split('.').first();
    PDeviceProperty* const property = device == nullptr ? nullptr : device->getProperty(ofProperty);
    const QString title = property == nullptr ? QString() : titleWithGroup(*device, *property);
    if (title.isEmpty())
        return QString::fromLatin1(id);
    return ofProperty == id
               ? title
               : u"%1 (%2)"_qs.arg(title, QString::fromUtf8(id.mid(ofProperty.size() + 1)));
}
