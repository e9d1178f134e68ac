// SPDX-License-Identifier: MIT
#include <PCd/device/PDeviceManager.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>

#include <PCore/PPrintableText.h>

#include <algorithm>
#include <iterator>

namespace {

QString shownId(const PDevice* device) {
    return QString::fromUtf8(device->deviceId(false));
}

QString quotedIds(const QList<PDevice*>& devices) {
    QStringList ids;
    for (const PDevice* device : devices)
        ids.append(u'"' + PPrintableText::toLine(shownId(device)) + u'"');
    return ids.join(QLatin1String(", "));
}

PDeviceManager::Selection selectByPrefix(const QList<PDevice*>& all, const QString& prefix) {
    QList<PDevice*> found;
    std::copy_if(all.begin(), all.end(), std::back_inserter(found),
                 [&](const PDevice* device) { return shownId(device).startsWith(prefix); });
    if (found.size() == 1)
        return {found.first(), QString()};
    if (found.isEmpty())
        return {nullptr, u"no camera \"%1\": there are %2"_qs.arg(prefix, quotedIds(all))};
    return {nullptr,
            u"\"%1\" begins the ids of several cameras: %2"_qs.arg(prefix, quotedIds(found))};
}

PDeviceManager::Selection selectByNumber(const QList<PDevice*>& all, int number,
                                         const QString& text) {
    if (number < all.size())
        return {all.at(number), QString()};
    // Model names may be numbers.
    const PDeviceManager::Selection byPrefix = selectByPrefix(all, text);
    if (byPrefix.device != nullptr)
        return byPrefix;
    return {nullptr, u"no camera %1: the cameras are numbered 0 to %2"_qs.arg(
                         QString::number(number), QString::number(all.size() - 1))};
}

} // namespace

PDeviceManager::PDeviceManager(QObject* parent)
    : QObject(parent) {
}

PDeviceManager::~PDeviceManager() {
    for (const auto& deviceRegister : m_registers)
        deviceRegister->registerCleanup();
}

void PDeviceManager::addRegister(PDeviceRegister* deviceRegister) {
    m_registers.emplace_back(deviceRegister);
    connect(deviceRegister, &PDeviceRegister::deviceAdded, this, &PDeviceManager::deviceAdded);
    connect(deviceRegister, &PDeviceRegister::deviceRemoved, this, &PDeviceManager::deviceRemoved);
    deviceRegister->registerInitialize();
}

QList<PDevice*> PDeviceManager::devices() const {
    QList<PDevice*> all;
    for (const auto& deviceRegister : m_registers)
        all += deviceRegister->devices();
    return all;
}

PDeviceManager::Selection PDeviceManager::select(const QString& text) const {
    const QList<PDevice*> all = devices();
    if (all.isEmpty())
        return {nullptr, u"no camera found"_qs};
    if (text.isEmpty())
        return {all.first(), QString()};
    // An exact id wins over longer ids that begin with it.
    const auto exact = std::find_if(all.begin(), all.end(),
                                    [&](const PDevice* device) { return shownId(device) == text; });
    if (exact != all.end())
        return {*exact, QString()};
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 0 ? selectByNumber(all, number, text) : selectByPrefix(all, text);
}

void PDeviceManager::updateDevices() {
    for (const auto& deviceRegister : m_registers)
        deviceRegister->updateDevices();
}

#include "moc_PDeviceManager.cpp"
