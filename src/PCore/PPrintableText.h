// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QString>

/// Makes text safe for terminals, logs and lists. Names and values may come from files and cameras,
/// and must neither control a terminal nor look like lines that the program has written. Control
/// characters, and those that change the order in which text is shown, become visible: `\n`, `\t`,
/// `\x1b`, `\u202e`. Any thread.
namespace PPrintableText {

/// The text as one line: a name, a row of a list, a record.
PCD_EXPORT QString toLine(const QString& text);
/// Several lines: line breaks stay, so the names in it must have been through toLine().
PCD_EXPORT QString toLines(const QString& text);

} // namespace PPrintableText
