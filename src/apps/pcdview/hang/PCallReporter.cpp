// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PCallReporter.h>

#include <apps/common/hang/POverdueCalls.h>
#include <apps/pcdview/options/PViewLog.h>

#include <PCore/call/PCallSlot.h>

#include <QLocale>

namespace {

// Times the patience. A camera that is opened may take some seconds.
constexpr int noticeAfter = 4;

} // namespace

PCallReporter::PCallReporter(std::chrono::milliseconds patience, const QStringList& noticeCommand)
    : m_noticeAfter(noticeAfter * patience)
    , m_guiThread(PCallSlot::ofThread())
    , m_notice(noticeCommand)
    , m_watchdog([this](const PCallWatchdog::Call& call) { report(call); }, patience) {
}

/// On the watchdog's thread.
void PCallReporter::report(const PCallWatchdog::Call& call) {
    PViewLog::warning(POverdueCalls::toText(call));
    if (call.isOver)
        reportReturn(call);
    else
        showIfLong(call);
}

void PCallReporter::reportReturn(const PCallWatchdog::Call& call) {
    const QString seconds = QLocale().toString(double(call.time.count()) / 1e3, 'f', 1);
    // The hop to the GUI thread. It runs there once that is free: the next call of a series may
    // hang too, and the notice then stays and shows that.
    m_messages.post([this, name = call.text, seconds] {
        m_notice.hide();
        emit returned(
            tr("The camera did not answer for %1 s: %2 had not returned").arg(seconds, name));
    });
}

/// If the GUI thread is in this call.
void PCallReporter::showIfLong(const PCallWatchdog::Call& call) {
    if (m_guiThread.text() == call.text && (call.time >= m_noticeAfter || m_notice.isShown()))
        m_notice.show(call);
}

#include "moc_PCallReporter.cpp"
