// SPDX-License-Identifier: MIT
#include <PCore/work/PGuardedCall.h>

#include <QtGlobal>

#include <exception>
#include <new>

PStatus PGuardedCall::status(const std::function<PStatus()>& function) noexcept {
    try {
        return function();
    } catch (const std::bad_alloc&) { // what() is the name of the class
        return PStatus::failure(u"there is not enough memory"_qs);
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
