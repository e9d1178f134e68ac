// SPDX-License-Identifier: MIT
#include <PCore/work/PGuardedCall.h>

#include <QtGlobal>

#include <exception>

PStatus PGuardedCall::status(const std::function<PStatus()>& function) noexcept {
    try {
        return function();
    } catch (const std::exception& error) {
        return PStatus::failure(QString::fromLocal8Bit(error.what()));
    } catch (...) {
        return PStatus::failure(u"unknown exception"_qs);
    }
}

void PGuardedCall::logged(const std::function<void()>& function) noexcept {
    try {
        function();
    } catch (const std::exception& error) {
        qCritical("An exception left a call: %s", error.what());
    } catch (...) {
        qCritical("An unknown exception left a call");
    }
}
