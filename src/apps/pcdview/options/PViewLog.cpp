// SPDX-License-Identifier: MIT
#include <apps/pcdview/options/PViewLog.h>

#include <PLog/PLog.h>

namespace {

void log(PLogLevel level, const QString& text) {
    PLog::logStream(u"pcdview"_qs, QString::fromLatin1(Q_FUNC_INFO), QString::fromLatin1(__FILE__),
                    __LINE__, level)
        << text;
}

} // namespace

void PViewLog::info(const QString& text) {
    log(PLogLevel::Info, text);
}

void PViewLog::warning(const QString& text) {
    log(PLogLevel::Warning, text);
}
