// SPDX-License-Identifier: MIT
#include <apps/pcdctl/camera/PCtlHost.h>
#include <apps/pcdctl/cli/PCtlOutput.h>
#include <apps/pcdctl/cli/PInterruptibleLoop.h>
#include <apps/pcdctl/commands/PCtlCommands.h>

#include <PCd/device/PDevice.h>

#include <QDateTime>

namespace {

void printEvent(const QString& event, const PCameraIdentity& camera, bool json) {
    const QString time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    if (json) {
        QJsonObject object = PCtlOutput::toJson(camera);
        object.insert(u"event"_qs, event);
        object.insert(u"time"_qs, time);
        PCtlOutput::printJsonLine(object);
    } else {
        const QString kind = camera.simulated ? u"  (simulated)"_qs : QString();
        PCtlOutput::printLine(
            u"%1  %2  %3%4"_qs.arg(time, event.leftJustified(8), camera.id, kind));
    }
    // At once, not when the buffer is full: readers wait for the event.
    PCtlOutput::flush();
}

} // namespace

PCtlOutcome runMonitorCommand(PCtlHost& host, const PCtlOptions& options) {
    PInterruptibleLoop loop;
    const QList<PDevice*> present = host.manager().devices();
    for (const PDevice* device : present)
        printEvent(u"present"_qs, host.identify(device), options.json);
    if (present.isEmpty())
        PCtlOutput::printMessage(u"no camera yet; waiting for one"_qs);
    // Destroyed with this function, before the manager removes its devices.
    const QObject context;
    const auto print = [&](const QString& event) {
        return [&host, &options, event](const PDevice* device) {
            printEvent(event, host.identify(device), options.json);
        };
    };
    QObject::connect(&host.manager(), &PDeviceManager::deviceAdded, &context, print(u"arrived"_qs));
    QObject::connect(&host.manager(), &PDeviceManager::deviceRemoved, &context,
                     print(u"departed"_qs));
    loop.waitFor([] { return false; }, options.duration);
    return loop.isInterrupted() && options.duration ? PCtlOutcome::failed(u"interrupted"_qs)
                                                    : PCtlOutcome();
}
