// SPDX-License-Identifier: MIT
#include <apps/common/doctor/PClockExamination.h>

#include <utility>

namespace {

using Severity = PFinding::Severity;

const QString clockTopic = u"clock"_qs;
const QString sourceSubject = u"the time source"_qs;
const QString daySubject = u"the time of day"_qs;

/// The kernel takes these when it trusts no other; each reading takes long or is coarse.
bool isSlowSource(const QString& source) {
    return source == u"hpet" || source == u"acpi_pm" || source.endsWith(u"jiffies");
}

} // namespace

PClockExamination::PClockExamination(PSystemClock clock)
    : m_clock(std::move(clock)) {
}

QList<PFinding> PClockExamination::run() const {
    return {examineSource(), examineTimeOfDay()};
}

PFinding PClockExamination::examineSource() const {
    if (m_clock.source.isEmpty()) {
        return {Severity::Note, clockTopic, sourceSubject, u"the system does not report it"_qs, {}};
    }
    if (!isSlowSource(m_clock.source))
        return {Severity::Ok, clockTopic, sourceSubject, m_clock.source, {}};
    return {
        Severity::Warning, clockTopic, sourceSubject,
        u"%1, which is slow or coarse, so frame times are less precise"_qs.arg(m_clock.source),
        u"Look for \"clocksource\" in the kernel's log (sudo dmesg); a firmware update may help."_qs};
}

PFinding PClockExamination::examineTimeOfDay() const {
    if (!m_clock.isSynchronised) {
        return {Severity::Note,
                clockTopic,
                daySubject,
                u"the system does not report whether it is synchronised"_qs,
                {}};
    }
    if (*m_clock.isSynchronised)
        return {Severity::Ok, clockTopic, daySubject, u"synchronised with a time server"_qs, {}};
    return {Severity::Warning, clockTopic, daySubject,
            u"not synchronised, so the times in saved files may be wrong"_qs,
            u"Switch synchronisation on: sudo timedatectl set-ntp true"_qs};
}
