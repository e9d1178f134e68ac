// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/// What all fuzz targets share. One thread.
namespace Fuzz {

/// The input of a run as bytes, of which no more can be read than there are.
QByteArray toBytes(const std::uint8_t* data, std::size_t size);

/// Ends the process, so that libFuzzer keeps the input, if something that must hold does not.
void require(bool holds, const char* what);

/// A folder of this process for temporary files, which goes with it.
QString folder();

} // namespace Fuzz
