// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// The functions of the SDK by their names. Any thread.
namespace PSimFunctionNames {

/// True if this library exports a function of the SDK with this name.
bool isKnown(const QByteArray& name);

} // namespace PSimFunctionNames
