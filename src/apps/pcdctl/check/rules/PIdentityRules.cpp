// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <PCd/device/PDeviceRegister.h>

#include <algorithm>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;

bool isPrintable(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isPrint(); });
}

/// What the id must begin with.
QString expectedId(const PDevice& device) {
    const QString serial = device.serial();
    return serial.isEmpty() ? device.model() : device.model() + u'-' + serial;
}

PCheckResult examineModel(PCheckBench& bench) {
    return PCheckResult::unless(
        bench.device().model().trimmed().isEmpty() ? u"the model is empty"_qs : QString());
}

PCheckResult examinePrintable(PCheckBench& bench) {
    for (const QString& text : {bench.device().model(), bench.device().serial()}) {
        if (!isPrintable(text))
            return PCheckResult::failed(
                u"\"%1\" has characters that control a terminal"_qs.arg(text));
    }
    return {};
}

PCheckResult examineId(PCheckBench& bench) {
    const QString id = QString::fromUtf8(bench.device().deviceId(false));
    const QString expected = expectedId(bench.device());
    if (id == expected || id.startsWith(expected + u'#'))
        return {};
    return PCheckResult::failed(
        u"the id is \"%1\", model and serial number give \"%2\""_qs.arg(id, expected));
}

PCheckResult examineSameIdentity(PCheckBench& bench) {
    const QString id = QString::fromUtf8(bench.device().deviceId(false));
    const QString now = expectedId(bench.device());
    return PCheckResult::unless(
        id.startsWith(now)
            ? QString()
            : u"in this mode model and serial number give \"%1\", the id is \"%2\""_qs.arg(now,
                                                                                           id));
}

/// Disposes of devices that the register does not list.
qsizetype removeStrangers(PDeviceRegister& deviceRegister, const QList<PDevice*>& found) {
    qsizetype count = 0;
    for (PDevice* const device : found) {
        if (device == nullptr || deviceRegister.devices().contains(device))
            continue;
        ++count;
        deviceRegister.destroyDevice(device);
    }
    return count;
}

PCheckResult examineRegisterId(PCheckBench& bench) {
    return PCheckResult::unless(
        bench.deviceRegister().id().isEmpty() ? u"the register's id is empty"_qs : QString());
}

PCheckResult examineSameDevices(PCheckBench& bench) {
    PDeviceRegister& deviceRegister = bench.deviceRegister();
    const QList<PDevice*> found = deviceRegister.aliveDevices();
    const qsizetype strangers = removeStrangers(deviceRegister, found);
    if (strangers > 0)
        return PCheckResult::failed(
            u"a second search made %1 new device objects"_qs.arg(strangers));
    return PCheckResult::unless(found.contains(&bench.device())
                                    ? QString()
                                    : u"a second search does not find the camera"_qs);
}

PCheckResult examineEntries(PCheckBench& bench) {
    const QList<PDevice*> found = bench.deviceRegister().aliveDevices();
    removeStrangers(bench.deviceRegister(), found);
    if (found.contains(nullptr))
        return PCheckResult::failed(u"the list has an empty entry"_qs);
    return PCheckResult::unless(found.count(&bench.device()) > 1 ? u"the camera is listed twice"_qs
                                                                 : QString());
}

PCheckResult examineFinding(PCheckBench& bench) {
    for (const bool withRegister : {false, true}) {
        const QByteArray id = bench.device().deviceId(withRegister);
        if (bench.deviceRegister().createDevice(id) != &bench.device())
            return PCheckResult::failed(
                u"createDevice(\"%1\") returns another device, or none"_qs.arg(
                    QString::fromUtf8(id)));
    }
    return {};
}

PCheckResult examineUnknownId(PCheckBench& bench) {
    const PDevice* const found = bench.deviceRegister().createDevice("no such camera");
    return PCheckResult::unless(
        found == nullptr ? QString() : u"createDevice(\"no such camera\") returns a device"_qs);
}

PCheckResult examineSearchInStream(PCheckBench& bench) {
    const PStatus stream = bench.ensureStream();
    if (!stream.isOk())
        return PCheckResult::skipped(stream.reason());
    bench.deviceRegister().updateDevices();
    if (!bench.isPresent())
        return PCheckResult::failed(u"the search removed the camera"_qs);
    // Two: one may have been on its way.
    const bool flows = bench.waitForFrames(2);
    bench.stopStream();
    return PCheckResult::unless(flows ? QString() : u"no frames arrive after the search"_qs);
}

} // namespace

QList<PCheckRule> PCheckRules::identity() {
    return {
        {u"identity.model"_qs,
         u"A camera has a model name: users choose it by that, and its id begins with it."_qs,
         u"Return the name that the SDK reports from getModel()."_qs, Where::Once, For::Camera,
         &examineModel},
        {u"identity.printable"_qs,
         u"Model and serial number can be printed: they go to terminals, logs and files."_qs,
         u"Cut the SDK's text at its first zero byte, and leave control characters out."_qs,
         Where::Once, For::Camera, &examinePrintable},
        {u"identity.id"_qs,
         u"The id is made of model and serial number: profiles and scripts find the camera by it."_qs,
         u"Claim the id with deviceId(false) in the constructor, after model and serial number are "
         "read."_qs,
         Where::Once,
         For::Camera,
         &examineId,
         {u"identity.model"_qs, u"identity.printable"_qs}},
        {u"identity.same-in-modes"_qs,
         u"Model and serial number stay the same whatever is set: a camera must not turn into "
         "another one."_qs,
         u"Read both once, in the constructor, and return the copies."_qs,
         Where::Modes,
         For::Camera,
         &examineSameIdentity,
         {u"identity.id"_qs}},
    };
}

QList<PCheckRule> PCheckRules::enumeration() {
    return {
        {u"enumeration.register-id"_qs,
         u"The register has an id: it tells cameras of different plugins apart."_qs,
         u"Call setId() in the constructor of the register."_qs, Where::Once, For::Camera,
         &examineRegisterId},
        {u"enumeration.same-devices"_qs,
         u"A search returns the same object for a camera that is still present: hosts hold on to it."_qs,
         u"In aliveDevices() look for the camera in devices() before making a new object."_qs,
         Where::Once, For::Camera, &examineSameDevices},
        {u"enumeration.entries"_qs,
         u"The list of a search has each camera once, and nothing else."_qs,
         u"Leave a camera that cannot be opened out of the list that aliveDevices() returns."_qs,
         Where::Once,
         For::Camera,
         &examineEntries,
         {u"enumeration.same-devices"_qs}},
        {u"enumeration.finds-by-id"_qs,
         u"A register finds its camera by the id, with and without the register's: hosts open the "
         "camera of the last session so."_qs,
         u"Do not override createDevice(), or call the base class from it."_qs, Where::Once,
         For::Camera, &examineFinding},
        {u"enumeration.unknown-id"_qs, u"A register has no camera for an id that none has."_qs,
         u"Do not override createDevice(), or call the base class from it."_qs, Where::Once,
         For::Camera, &examineUnknownId},
        {u"enumeration.while-streaming"_qs,
         u"A search does not disturb a stream: it runs whenever any device is plugged in."_qs,
         u"Do not open a camera in aliveDevices() to see whether it is there."_qs, Where::Once,
         For::Camera, &examineSearchInStream},
    };
}
