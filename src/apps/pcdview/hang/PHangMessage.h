// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/call/PCallWatchdog.h>

#include <QByteArray>

#include <optional>

/// What the viewer sends the process of PHangNotice: a call that has not returned. Any thread.
namespace PHangMessage {

/// The longest message, in bytes.
constexpr int mostBytes = 4096;

/// The message about a call; its text is cut if it is too long.
QByteArray write(const PCallWatchdog::Call& call);
/// The call in a message; none if the message is damaged.
std::optional<PCallWatchdog::Call> read(const QByteArray& message);

} // namespace PHangMessage
