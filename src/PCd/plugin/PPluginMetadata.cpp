// SPDX-License-Identifier: MIT
#include <PCd/plugin/PPluginMetadata.h>

#include <QJsonObject>
#include <QPluginLoader>

namespace {

/// Interface ids of device plugins begin with this.
const QLatin1String devicePluginPrefix("pellix.devices.");

} // namespace

PStatus PPluginMetadata::read(const QPluginLoader& loader, PPluginMetadata& metadata) {
    const QJsonObject found = loader.metaData();
    if (found.isEmpty())
        return PStatus::failure(loader.errorString());
    const QString iid = found.value(QLatin1String("IID")).toString();
    if (!iid.startsWith(devicePluginPrefix)) {
        return PStatus::failure(
            u"its interface is \"%1\", expected one that begins with \"%2\""_qs.arg(
                iid, devicePluginPrefix));
    }
    metadata.className = found.value(QLatin1String("className")).toString();
    return PStatus::Ok;
}
