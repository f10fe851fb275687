#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "automation/Text.h"

namespace veldmark {

/// The automation date: days since 1899-12-30 00:00, the fraction being the time of day.
struct Date {
  double days = 0;
  auto operator<=>(const Date&) const = default;
};

/// A 64-bit integer scaled by 10000.
struct Currency {
  std::int64_t scaled = 0;

  static constexpr std::int64_t kScale = 10000;
  auto operator<=>(const Currency&) const = default;
};

/// A platform status that travels as a value.
struct Status {
  std::int32_t code = 0;

  /// What stands in the place of an argument that the caller left out.
  static constexpr std::int32_t kParameterNotFound = static_cast<std::int32_t>(0x80020004u);
  auto operator<=>(const Status&) const = default;
};

/// One dimension of an array.
struct Bound {
  std::int32_t lower = 0;
  std::uint32_t count = 0;
  bool operator==(const Bound&) const = default;
};

/// An array of one or more dimensions; the elements lie with the first index running fastest.
template <class T>
struct Array {
  std::vector<Bound> bounds;
  std::vector<T> elements;

  Array() : bounds(1) {}
  /// One dimension over `values`, counted from `lower`.
  explicit Array(std::vector<T> values, std::int32_t lower = 0)
      : bounds{{lower, static_cast<std::uint32_t>(values.size())}}, elements(std::move(values)) {}
  /// Two zero-based dimensions of default values.
  Array(std::uint32_t rows, std::uint32_t columns)
      : bounds{{0, rows}, {0, columns}}, elements(std::size_t{rows} * columns) {}

  T& At(std::uint32_t row, std::uint32_t column) {
    return elements[row + std::size_t{column} * bounds[0].count];
  }
  const T& At(std::uint32_t row, std::uint32_t column) const {
    return elements[row + std::size_t{column} * bounds[0].count];
  }
  bool operator==(const Array&) const = default;
};

using ByteArray = Array<std::uint8_t>;
using LongArray = Array<std::int32_t>;
using TextArray = Array<Text>;

}  // namespace veldmark
