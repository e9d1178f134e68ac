// SPDX-License-Identifier: MIT
#include <stub/StubHost.h>

#include <stub/StubSdk.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceRegister.h>
#include <PCd/plugin/PPluginLoader.h>

#include <PLog/PLog.h>

#include <stdexcept>

namespace {

void require(const PStatus& status) {
    if (!status.isOk())
        throw std::runtime_error(status.reason().toStdString());
}

} // namespace

StubHost::StubHost(unsigned cameraCount) {
    qputenv("TOUPCAM_LIBRARY", StubSdk::path());
    require(PLog::setFilter(u"warning"_qs)); // a table is printed, not what each camera reports
    StubSdk::setCameraCount(cameraCount);
    for (PDeviceRegister* const found : PPluginLoader().load())
        m_manager.addRegister(found);
    if (m_manager.devices().size() != qsizetype(cameraCount))
        throw std::runtime_error("the plugin has not opened the stub SDK's cameras");
}

void StubHost::startStream() {
    require(device().link());
    require(device().startStream());
}
