#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/simulated/estate/RecordedLog.h"

namespace veldmark::simulated {

// The file that a log is kept in, and that a backup of it is: a header, the records one after the
// other, and a record that ends them. In a live log's file they go round: where one reaches the
// file's end, it goes on behind the header.

// The records of such a file, the oldest first; nothing for what is no such file or doesn't lead
// from the first record to the last. A file that wasn't closed has a header that is out of date:
// its end record counts, and where that is lost, every record that is found whole.
std::optional<std::vector<RawRecord>> ReadLogFile(std::span<const std::uint8_t> bytes);

// A closed file of these records, which nothing goes round in.
std::vector<std::uint8_t> WriteLogFile(const RecordedLog& log);

}  // namespace veldmark::simulated
