// SPDX-License-Identifier: MIT
#include <apps/pcdctl/check/bench/PCheckBench.h>
#include <apps/pcdctl/check/rules/PCheckRules.h>

#include <algorithm>

namespace {

using Where = PCheckRule::Where;
using For = PCheckRule::For;

constexpr const char* noSuchMode = "99999";

QString nameMode(const PDeviceMode& mode) {
    return mode.id.isEmpty()
               ? u"none"_qs
               : u"\"%1\" (%2, %3 x %4)"_qs.arg(QString::fromLatin1(mode.id), mode.name,
                                                QString::number(mode.width),
                                                QString::number(mode.height));
}

bool isListed(const QList<PDeviceMode>& modes, const QByteArray& id) {
    return std::any_of(modes.begin(), modes.end(),
                       [&](const PDeviceMode& mode) { return mode.id == id; });
}

PCheckResult examinePresence(PCheckBench& bench) {
    return PCheckResult::unless(bench.modes().isEmpty() ? u"the camera has no modes"_qs
                                                        : QString());
}

PCheckResult examineDescription(PCheckBench& bench) {
    for (const PDeviceMode& mode : bench.modes()) {
        if (mode.width <= 0 || mode.height <= 0 || mode.bitDepth <= 0 || mode.name.isEmpty() ||
            mode.id.isEmpty()) {
            return PCheckResult::failed(
                u"mode %1, %2 bits"_qs.arg(nameMode(mode), QString::number(mode.bitDepth)));
        }
    }
    return {};
}

PCheckResult examineDistinctModes(PCheckBench& bench) {
    QList<QByteArray> ids;
    for (const PDeviceMode& mode : bench.modes()) {
        if (ids.contains(mode.id))
            return PCheckResult::failed(
                u"two modes have the id \"%1\""_qs.arg(QString::fromLatin1(mode.id)));
        ids.append(mode.id);
    }
    return {};
}

PCheckResult examineSameModes(PCheckBench& bench) {
    return PCheckResult::unless(bench.device().getSupportModes() == bench.modes()
                                    ? QString()
                                    : u"the list differs from the one at first"_qs);
}

PCheckResult examineCurrentMode(PCheckBench& bench) {
    const PDeviceMode current = bench.device().getCurrentMode();
    return PCheckResult::unless(
        bench.modes().contains(current)
            ? QString()
            : u"the current mode is %1, which is not in the list"_qs.arg(nameMode(current)));
}

PCheckResult examineSetMode(PCheckBench& bench) {
    const PDeviceMode mode = bench.state().mode.value_or(PDeviceMode());
    const PStatus set = bench.device().setMode(mode);
    const PDeviceMode current = bench.device().getCurrentMode();
    if (current.id == mode.id)
        return {};
    return PCheckResult::failed(u"sent %1, the camera has %2%3"_qs.arg(
        nameMode(mode), nameMode(current), set.isOk() ? QString() : u"; "_qs + set.reason()));
}

PCheckResult examineUnknownMode(PCheckBench& bench) {
    bench.device().setMode({640, 480, u"unknown"_qs, noSuchMode, 24});
    const PDeviceMode current = bench.device().getCurrentMode();
    bench.device().setMode(bench.state().mode.value_or(PDeviceMode()));
    return PCheckResult::unless(
        isListed(bench.modes(), current.id)
            ? QString()
            : u"after an unknown mode, the camera has %1"_qs.arg(nameMode(current)));
}

/// The size of frames changes with the mode, whatever region and binning make of it.
PCheckResult examineChangeInStream(PCheckBench& bench) {
    const PDeviceMode mode = bench.state().mode.value_or(PDeviceMode());
    const QSize before = bench.frames()->seen().liveSize;
    for (const PDeviceMode& other : bench.modes()) {
        if (other.width == mode.width && other.height == mode.height)
            continue;
        bench.device().setMode(other);
        if (bench.device().getCurrentMode().id != other.id)
            return PCheckResult::skipped(u"the camera keeps its mode while streaming"_qs);
        const bool follows = bench.waitFor(
            [&] { return bench.frames()->seen().liveSize != before; }, bench.frameTimeout());
        bench.device().setMode(mode);
        bench.waitFor([&] { return bench.frames()->seen().liveSize == before; },
                      bench.frameTimeout());
        return PCheckResult::unless(follows ? QString()
                                            : u"in mode %1 frames still have %2 x %3 pixels"_qs.arg(
                                                  nameMode(other), QString::number(before.width()),
                                                  QString::number(before.height())));
    }
    return PCheckResult::skipped(u"the camera has no mode of another size"_qs);
}

} // namespace

QList<PCheckRule> PCheckRules::modes() {
    const QString setter = u"Look at trySetMode(): only the id decides which mode is meant."_qs;
    return {
        {u"modes.present"_qs,
         u"A camera has at least one mode: without one, a host takes it for gone."_qs,
         u"Return the resolutions from getSupportModes(); one will do."_qs, Where::Once,
         For::Camera, &examinePresence},
        {u"modes.described"_qs,
         u"Each mode has an id, a name, a size and a bit depth: users choose it by them."_qs,
         u"Fill all fields of PDeviceMode."_qs, Where::Once, For::Camera, &examineDescription},
        {u"modes.distinct"_qs,
         u"No two modes have the same id: it is all that is saved of a mode."_qs,
         u"Use the number of the resolution as id."_qs, Where::Once, For::Camera,
         &examineDistinctModes},
        {u"modes.same-list"_qs,
         u"The list of modes is the same in each mode: a host reads it only once."_qs,
         u"List what the camera can do, not what can be reached from where it is."_qs, Where::Modes,
         For::Camera, &examineSameModes},
        {u"modes.current"_qs,
         u"The current mode is one of the list, in all its fields."_qs,
         u"Let getCurrentMode() return an entry of getSupportModes()."_qs,
         Where::Modes,
         For::Camera,
         &examineCurrentMode,
         {u"modes.present"_qs}},
        {u"modes.set"_qs,
         u"A mode of the list that is set is then the current one."_qs,
         setter,
         Where::Modes,
         For::Camera,
         &examineSetMode,
         {u"modes.present"_qs, u"modes.distinct"_qs}},
        {u"modes.unknown"_qs,
         u"An id that no mode has leaves the camera in a mode of the list: files and scripts may "
         "have any id."_qs,
         setter,
         Where::Modes,
         For::Camera,
         &examineUnknownMode,
         {u"modes.present"_qs, u"modes.current"_qs, u"modes.set"_qs}},
        {u"modes.while-streaming"_qs,
         u"A mode that is set while the camera streams applies to the next frames: hosts do not "
         "restart the stream."_qs,
         u"If the SDK cannot change it in a stream, stop and start the stream in trySetMode()."_qs,
         Where::Streaming,
         For::Camera,
         &examineChangeInStream,
         {u"modes.present"_qs, u"modes.set"_qs}},
    };
}
