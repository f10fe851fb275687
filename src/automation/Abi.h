#pragma once

#include <cstdint>

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"

#if defined(_WIN32) && defined(__i386__)
#define VELDMARK_STDCALL __attribute__((stdcall))
#else
#define VELDMARK_STDCALL
#endif

/// The binary form of values at an early-bound call, told without the platform's headers so that
/// the exported classes' own names stay free of its macros. The binary face
/// (automation/com) defines these functions.
namespace veldmark::abi {

/// An automation text: a pointer to its first unit, the byte length standing before it; null is
/// empty.
using RawText = char16_t*;
/// An interface pointer.
using RawObject = void*;
/// An array descriptor.
using RawArray = void*;

/// The published layout of the automation variant.
struct RawVariant {
  std::uint16_t type;
  std::uint16_t reserved[3];
  union {
    std::int64_t bits;
    struct {
      void* pointers[2];
    };
  };
};
static_assert(sizeof(RawVariant) == (sizeof(void*) == 8 ? 24 : 16));

inline constexpr std::int32_t kOk = 0;
inline constexpr std::int32_t kNullPointer = static_cast<std::int32_t>(0x80004003u);

/// A text read in place; null is empty.
TextView View(const char16_t* text);
/// Hands out a text; the receiver frees it.
RawText HandOutText(TextView text);
void Free(RawText text) noexcept;

/// Hands out an object's dual interface (of an enumerator: its enumeration interface) with a
/// reference for the receiver; null for Nothing.
RawObject HandOutObject(Object* object);
void FreeObject(RawObject object) noexcept;
/// The object behind an interface pointer of any source: one of ours, or a foreign one that is held
/// through it.
Ref<Object> Read(RawObject object);

RawVariant HandOutVariant(const Variant& value);
void Free(RawVariant& value) noexcept;
/// By-reference values are read through. Raises 458 for a type that the library doesn't know, and
/// `kNullPointer` for a reference to nowhere.
Variant Read(const RawVariant& value);
/// Replaces a value; a by-reference one is written through and keeps its type. Raises 13 or 6 where
/// the new value doesn't convert, 10 for an array in use and for a fixed one of
/// another shape.
void Assign(RawVariant& raw, const Variant& value);

RawArray HandOutArray(const ByteArray& array);
RawArray HandOutArray(const LongArray& array);
RawArray HandOutArray(const TextArray& array);
void FreeArray(RawArray array) noexcept;
/// Puts a new array, which it takes over, into a caller's variable. Raises 10 where the variable's
/// array has another shape and is fixed, in the caller's own storage, or in use.
void ReplaceArray(RawArray& variable, RawArray fresh);
/// A null array reads as an empty one, the elements of a variant array convert; another element
/// type raises 13.
void Read(RawArray raw, ByteArray& array);
void Read(RawArray raw, LongArray& array);
void Read(RawArray raw, TextArray& array);

/// Reports the exception being handled as the error of a call on `self`, with error information
/// for the thread, and returns the call's failure code.
std::int32_t Fail(const Object& self) noexcept;

}  // namespace veldmark::abi
