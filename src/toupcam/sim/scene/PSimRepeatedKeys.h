// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Finds what Qt's parser of JSON does not report: a key that an object has twice, of which it
/// keeps the last. Any thread.
namespace PSimRepeatedKeys {

/// Throws PSimSceneError with line and key for the first repeated key of a text that Qt's parser
/// has accepted.
void check(const QByteArray& json);

} // namespace PSimRepeatedKeys
