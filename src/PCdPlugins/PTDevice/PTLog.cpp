// SPDX-License-Identifier: MIT
#include "PTLog.h"

#include <QRegularExpression>

namespace {

/// GCC writes "T* f(const T&)", Clang "T *f(const T &)": the log has the latter.
QString oneSpelling(const char* function) {
    static const QRegularExpression markBehindName(QStringLiteral("(?<=[\\w>])([*&]+) ?"));
    return QString::fromLatin1(function).replace(markBehindName, QStringLiteral(" \\1"));
}

} // namespace

PMessageStream ptLog(const char* function, const char* file, int line, PLogLevel level) {
    return PLog::logStream(QStringLiteral("PTDevice"), oneSpelling(function),
                           QString::fromLatin1(file), line, level);
}

void ptLogFailedCall(const char* function, const char* file, int line, const char* call) {
    ptLog(function, file, line, PLogLevel::Warning) << "Failed TOUPCAM_OP:" << call;
}
