#pragma once

#include <cstdint>
#include <span>

#include "automation/Text.h"
#include "automation/Variant.h"
#include "registry/RegistryEnumerations.h"

/// What the data of registry values reads as. It comes from anybody who could write it: a text may
/// lack its end or half its last unit, a number some of its bytes. What is missing counts as zero,
/// and what a number has beyond four bytes doesn't count.
namespace veldmark {

using DataBytes = std::span<const std::uint8_t>;

/// Whether values of the type are read at all; the others are empty variants.
bool IsReadType(RegValueTypes type);
/// Whether the type's data is UTF-16.
bool IsTextType(RegValueTypes type);

/// The number with its bytes reversed.
std::int32_t SwapLongBytes(std::int32_t value);

/// A value that is asked for by name, on a computer ("" for this one). Every text and every string
/// of a list goes through `CSupport::ExpandPathForMachine`; a list's strings are joined by NULs.
Variant ValueOf(RegValueTypes type, DataBytes data, const Text& machine_name);
/// A value in a listing: texts stay as they are, but those of REG_EXPAND_SZ have this process's
/// references replaced, wherever they are from.
Variant ListedValueOf(RegValueTypes type, DataBytes data);

}  // namespace veldmark
