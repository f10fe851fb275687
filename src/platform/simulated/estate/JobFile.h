#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/TaskScheduler.h"

namespace veldmark::simulated {

// The content of a file "x.job", in which the scheduler keeps a work item, as it is published.
struct JobFile {
  WORD product_version = 0x0A00;  // of the system that wrote it, 0xMMmm
  std::array<std::uint8_t, 16> uuid{};
  WORD error_retry_count = 0;
  WORD error_retry_interval = 0;  // minutes
  WORD idle_deadline = 60;        // minutes
  WORD idle_wait = 10;            // minutes
  DWORD priority = kNormalPriorityClass;
  DWORD max_run_time = 259'200'000;  // milliseconds
  DWORD exit_code = 0;
  HRESULT status = kTaskNotScheduled;
  DWORD flags = 0;
  SYSTEMTIME last_run{};  // local time; zeros for never
  WORD running_instances = 0;
  Text application{};
  Text parameters{};
  Text working_directory{};
  Text author{};
  Text comment{};
  std::vector<std::uint8_t> user_data{};
  HRESULT start_error = kTaskHasNotRun;  // of the latest start
  DWORD reserved_flags = 0;
  std::vector<TASK_TRIGGER> triggers{};
  // Version, minimum version and 64 bytes, which are kept and never checked; may be missing.
  std::vector<std::uint8_t> signature{};

  // The file's content, or why it is none: kInvalidTask for what leaves the bytes, contradicts
  // itself or has a trigger of another size, kUnknownObjectVersion for another version of the file.
  static std::variant<JobFile, HRESULT> Read(std::span<const std::uint8_t> bytes);

  // Nothing where the texts and data are too long for the file's 16-bit lengths and offsets.
  std::optional<std::vector<std::uint8_t>> Write() const;
};

}  // namespace veldmark::simulated
