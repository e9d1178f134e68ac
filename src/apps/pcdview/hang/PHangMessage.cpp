// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangMessage.h>

QByteArray PHangMessage::write(const PCallWatchdog::Call& call) {
    const QByteArray message =
        QByteArray::number(qint64(call.time.count())) + ' ' + call.text.toUtf8();
    return message.left(mostBytes);
}

std::optional<PCallWatchdog::Call> PHangMessage::read(const QByteArray& message) {
    const qsizetype space = message.indexOf(' ');
    bool isNumber = false;
    const qint64 time = space < 0 ? 0 : message.left(space).toLongLong(&isNumber);
    if (!isNumber || time < 0)
        return std::nullopt;
    return PCallWatchdog::Call{QString::fromUtf8(message.mid(space + 1)),
                               std::chrono::milliseconds(time), false};
}
