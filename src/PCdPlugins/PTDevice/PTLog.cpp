// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTLog.h>

#include <QRegularExpression>

namespace {

/// GCC writes "T* f(const T&)", Clang "T *f(const T &)"; the log uses the latter.
QString oneSpelling(const char* function) {
    static const QRegularExpression markBehindName(u"(?<=[\\w>])([*&]+) ?"_qs);
    return QString::fromLatin1(function).replace(markBehindName, u" \\1"_qs);
}

} // namespace

PMessageStream ptLog(const char* function, const char* file, int line, PLogLevel level) {
    return PLog::logStream(u"PTDevice"_qs, oneSpelling(function), QString::fromLatin1(file), line,
                           level);
}

void ptLogFailedCall(const char* function, const char* file, int line, const char* call) {
    ptLog(function, file, line, PLogLevel::Warning) << "Failed TOUPCAM_OP:" << call;
}
