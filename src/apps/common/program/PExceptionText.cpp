// SPDX-License-Identifier: MIT
#include <apps/common/program/PExceptionText.h>

#include <PCore/PStatus.h>

#include <new>
#include <system_error>

QString PExceptionText::of(const std::exception& error) {
    const auto* const system = dynamic_cast<const std::system_error*>(&error);
    if (system != nullptr && system->code() == std::errc::resource_unavailable_try_again)
        return u"the system has started no thread (%1): end other programs, or raise the limits "
               "that \"ulimit -u -v\" shows"_qs.arg(QString::fromLocal8Bit(error.what()));
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr)
        return u"there is not enough memory"_qs;
    return QString::fromLocal8Bit(error.what());
}
