#pragma once

#include "platform/automation/com/Sdk.h"

namespace veldmark::com {

/// Reads the value of a type (without `VT_BYREF`) that lies at `data`; raises 458 for a type that
/// the library doesn't know.
Variant ReadElement(VARTYPE type, const void* data);

/// The bytes that a value of a type takes behind a by-reference variant or in an array; 0 for a
/// type that the library doesn't know.
std::size_t ElementSize(VARTYPE type);

/// Reads an array whose elements have a type; null is an empty array of it.
Variant ReadArray(VARTYPE type, SAFEARRAY* array);

/// Hands out an array of variants.
abi::RawArray HandOutVariantArray(const VariantArray& array);

/// The elements of any array as variants; raises 13 for what is no array.
VariantArray LooseArray(const Variant& array);

}  // namespace veldmark::com
