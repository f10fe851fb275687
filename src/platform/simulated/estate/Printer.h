#pragma once

#include <optional>

#include "automation/Text.h"
#include "platform/operations/Printing.h"
#include "platform/simulated/estate/NamedObject.h"

namespace veldmark::simulated {

// A printer of a computer. A text that nothing is said about is null in its record.
struct Printer : NamedObject {
  std::optional<Text> full_name{};  // what lists show; without it "\\srv\name"
  std::optional<Text> share{};
  std::optional<Text> port{};
  std::optional<Text> driver{};
  std::optional<Text> comment{};
  std::optional<Text> location{};
  std::optional<Text> separator_page{};
  std::optional<Text> print_processor{};
  std::optional<Text> datatype{};
  std::optional<Text> parameters{};
  std::optional<DWORD> attributes{};  // kPrinterAttribute...; without it local, and shared by name
  DWORD priority = 1;
  DWORD default_priority = 0;
  DWORD start = 0;  // minutes since midnight, UTC
  DWORD until = 0;
  DWORD status = 0;
  DWORD jobs = 0;
  DWORD pages_per_minute = 0;
};

}  // namespace veldmark::simulated
