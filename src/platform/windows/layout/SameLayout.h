#pragma once

#include <cstddef>

/// Proves at compile time that a record of ours, named together with its fields, has the size and
/// the alignment of the SDK's record of that name, and each field the place and the size that it
/// has there. A macro, because no template can ask two types for their fields of one name.
#define VELDMARK_SAME_LAYOUT(record, ...)                                        \
  VELDMARK_RESCAN(VELDMARK_SAME_FIELDS(record, __VA_ARGS__))                     \
  static_assert(sizeof(record) == sizeof(::record), "The size of " #record "."); \
  static_assert(alignof(record) == alignof(::record), "The alignment of " #record ".")

#define VELDMARK_SAME_FIELDS(record, field, ...)                      \
  static_assert(offsetof(record, field) == offsetof(::record, field), \
                "The place of " #record "::" #field ".");             \
  static_assert(sizeof(record::field) == sizeof(::record::field),     \
                "The size of " #record "::" #field ".");              \
  __VA_OPT__(VELDMARK_MORE_FIELDS VELDMARK_NO_ARGUMENTS(record, __VA_ARGS__))

// A macro isn't expanded within itself: the fields behind the first one wait for the next scan of
// the text. These are 81 of them; a longer record doesn't compile.
#define VELDMARK_NO_ARGUMENTS ()
#define VELDMARK_MORE_FIELDS() VELDMARK_SAME_FIELDS
#define VELDMARK_RESCAN(...) VELDMARK_RESCAN_27(VELDMARK_RESCAN_27(VELDMARK_RESCAN_27(__VA_ARGS__)))
#define VELDMARK_RESCAN_27(...) VELDMARK_RESCAN_9(VELDMARK_RESCAN_9(VELDMARK_RESCAN_9(__VA_ARGS__)))
#define VELDMARK_RESCAN_9(...) VELDMARK_RESCAN_3(VELDMARK_RESCAN_3(VELDMARK_RESCAN_3(__VA_ARGS__)))
#define VELDMARK_RESCAN_3(...) VELDMARK_SCAN(VELDMARK_SCAN(VELDMARK_SCAN(__VA_ARGS__)))
#define VELDMARK_SCAN(...) __VA_ARGS__
