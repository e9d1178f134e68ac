// SPDX-License-Identifier: MIT
#include <apps/common/hang/POverdueCalls.h>

#include <apps/common/hang/PEnvironmentSeconds.h>

#include <QStringList>

namespace {

constexpr const char* patienceVariable = "PCD_CALL_SECONDS";

QString inSeconds(std::chrono::milliseconds time) {
    const double seconds = double(time.count()) / 1e3;
    return QString::number(seconds, 'f', seconds < 10 ? 1 : 0);
}

} // namespace

std::chrono::milliseconds POverdueCalls::patience() {
    return PEnvironmentSeconds::read(patienceVariable, std::chrono::milliseconds(750));
}

PStatus POverdueCalls::checkEnvironment() {
    return PEnvironmentSeconds::check(patienceVariable);
}

QString POverdueCalls::toText(const PCallWatchdog::Call& call) {
    const QString words = call.isOver ? u"%1 has returned after %2 s"_qs
                                      : u"waiting for %1 to return, %2 s so far"_qs;
    return words.arg(call.text, inSeconds(call.time));
}

QString POverdueCalls::names() {
    QStringList names;
    for (const PCallWatchdog::Call& call : PCallWatchdog::overdueCalls())
        names.append(u"%1 (%2 s so far)"_qs.arg(call.text, inSeconds(call.time)));
    return names.join(u", "_qs);
}
