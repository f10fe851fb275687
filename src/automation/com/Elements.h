#pragma once

#include "automation/com/Sdk.h"

namespace veldmark::com {

/// Reads the value of a type (without `VT_BYREF`) that lies at `data`, so many references and
/// arrays deep; raises 458 for a type that the library doesn't know and 13 for a value within
/// itself.
Variant ReadElement(VARTYPE type, const void* data, int depth);

/// The bytes that a value of a type takes behind a by-reference variant or in an array; 0 for a
/// type that the library doesn't know.
std::size_t ElementSize(VARTYPE type);

/// Reads an array whose elements are told to have a type, and lie so deep; null is an empty array
/// of it. Raises 13 where the elements are of another type.
Variant ReadArray(VARTYPE type, SAFEARRAY* array, int depth);

/// Hands out an array of variants.
abi::RawArray HandOutVariantArray(const VariantArray& array);

/// The elements of any array as variants; raises 13 for what is no array.
VariantArray LooseArray(const Variant& array);

}  // namespace veldmark::com
