// SPDX-License-Identifier: MIT
#include <reliability/CallFault.h>

#include <reliability/ReliableCamera.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <QStringList>

#include <limits>

namespace {

constexpr auto timeoutResult = HRESULT(0x8001011f); // as other interfaces of this kind have it

void unplugCamera() {
    ToupcamSim_unplug(ReliableCamera::id);
}

template <unsigned code>
void fireEvent() {
    ToupcamSim_fireEvent(ReliableCamera::id, code);
}

CallFault::Kind failing(const char* name, HRESULT result) {
    return {name, TOUPCAMSIM_FAIL, result, TOUPCAMSIM_BEFORE_CALL, nullptr, false};
}

CallFault::Kind absurd(const char* name, HRESULT number) {
    return {name, TOUPCAMSIM_ABSURD, number, TOUPCAMSIM_BEFORE_CALL, nullptr, false};
}

struct CallbackKind {
    const char* before; ///< its name
    const char* after;
    void (*action)();
    bool isHarmless;
};

constexpr CallbackKind callbackKinds[] = {
    {"frame_before", "frame_after", ReliableCamera::pushFrame, true},
    {"still_before", "still_after", ReliableCamera::pushStill, true},
    {"malformed_before", "malformed_after", ReliableCamera::pushMalformed, true},
    {"loss_before", "loss_after", ReliableCamera::pushLoss, false},
    {"image_event_before", "image_event_after", fireEvent<TOUPCAM_EVENT_IMAGE>, true},
    {"error_event_before", "error_event_after", fireEvent<TOUPCAM_EVENT_ERROR>, true},
    {"gone_event_before", "gone_event_after", fireEvent<TOUPCAM_EVENT_DISCONNECTED>, false},
    {"hotplug_before", "hotplug_after", ToupcamSim_fireHotPlug, true},
};

std::vector<CallFault::Kind> callbacksAt(int moment) {
    std::vector<CallFault::Kind> kinds;
    for (const CallbackKind& kind : callbackKinds)
        kinds.push_back({moment == TOUPCAMSIM_BEFORE_CALL ? kind.before : kind.after,
                         TOUPCAMSIM_PASS, S_OK, moment, kind.action, kind.isHarmless});
    return kinds;
}

const CallFault::Kind* findKind(const QString& name) {
    for (const auto* kinds :
         {&CallFault::failures(), &CallFault::callbacksBefore(), &CallFault::callbacksAfter()}) {
        for (const CallFault::Kind& kind : *kinds) {
            if (name == QLatin1String(kind.name))
                return &kind;
        }
    }
    return nullptr;
}

} // namespace

const std::vector<CallFault::Kind>& CallFault::failures() {
    static const std::vector<Kind> kinds{
        failing("fail", E_FAIL),
        failing("gen_failure", E_GEN_FAILURE),
        failing("unexpected", E_UNEXPECTED),
        failing("timeout", timeoutResult),
        absurd("absurd", std::numeric_limits<int>::max()),
        absurd("absurd_negative", std::numeric_limits<int>::min()),
        {"unplugged", TOUPCAMSIM_PASS, S_OK, TOUPCAMSIM_BEFORE_CALL, unplugCamera, false}};
    return kinds;
}

const std::vector<CallFault::Kind>& CallFault::callbacksBefore() {
    static const std::vector<Kind> kinds = callbacksAt(TOUPCAMSIM_BEFORE_CALL);
    return kinds;
}

const std::vector<CallFault::Kind>& CallFault::callbacksAfter() {
    static const std::vector<Kind> kinds = callbacksAt(TOUPCAMSIM_AFTER_CALL);
    return kinds;
}

bool CallFault::canFail(const std::string& function) {
    return function != "Toupcam_Close" && function != "Toupcam_HotPlug";
}

QString CallFault::text() const {
    return u"%1#%2:%3"_qs.arg(QString::fromStdString(call.function), QString::number(call.number),
                              QString::fromLatin1(kind->name));
}

std::optional<CallFault> CallFault::parse(const QString& text) {
    const QString function = text.section(u'#', 0, 0);
    const QString rest = text.section(u'#', 1);
    bool isNumber = false;
    const unsigned number = rest.section(u':', 0, 0).toUInt(&isNumber);
    const Kind* const kind = findKind(rest.section(u':', 1));
    if (function.isEmpty() || !isNumber || kind == nullptr)
        return std::nullopt;
    return CallFault{{function.toStdString(), number}, kind};
}
