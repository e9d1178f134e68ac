// SPDX-License-Identifier: MIT
#pragma once

class PAbstractReader;
class PAbstractWriter;

/// Documents of saved state, whatever their format. One thread.
namespace StreamCopy {

/// Writes everything in the reader's current object into the writer's current object.
void copy(PAbstractReader& from, PAbstractWriter& to);

/// Ends the process if the current objects of two readers are not the same: names in their order,
/// types, values, and what is null.
void requireSame(PAbstractReader& a, PAbstractReader& b);

/// What every document that a reader accepts must do: written in either format and read again, it
/// is the same. Ends the process if it is not.
void requireKept(PAbstractReader& document);

} // namespace StreamCopy
