#pragma once

#include <cstdint>
#include <exception>
#include <optional>

#include "automation/Text.h"

namespace veldmark {

/// The runtime's own error numbers, as scripts know them.
namespace runtime_error {
inline constexpr std::int32_t kInvalidCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kInternalError = 51;
inline constexpr std::int32_t kBadFileName = 52;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kFileAlreadyOpen = 55;
inline constexpr std::int32_t kDeviceError = 57;
inline constexpr std::int32_t kFileAlreadyExists = 58;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kInputPastEnd = 62;
inline constexpr std::int32_t kTooManyFiles = 67;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kDiskNotReady = 71;
inline constexpr std::int32_t kPathFileAccess = 75;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kInvalidUseOfNull = 94;
inline constexpr std::int32_t kCannotCreateObject = 429;
inline constexpr std::int32_t kNoSuchMember = 438;
inline constexpr std::int32_t kNamedArgumentNotFound = 448;
inline constexpr std::int32_t kArgumentNotOptional = 449;
inline constexpr std::int32_t kWrongNumberOfArguments = 450;
inline constexpr std::int32_t kKeyAlreadyPresent = 457;
}  // namespace runtime_error

/// Where the library's own error numbers begin.
inline constexpr std::int32_t kAutomationErrorBase = static_cast<std::int32_t>(0x80040000u);

/// The name under which the library reports itself; a class stands as "Veldmark2.CFolder".
inline constexpr TextView kLibraryName = u"Veldmark2";

/// The error source of a class: "Veldmark2.CFolder" for `CFolder`.
Text SourceOf(TextView class_name);

/// One automation error on its way to the caller.
class AutomationError : public std::exception {
 public:
  AutomationError(std::int32_t number, Text source, Text description);
  AutomationError(const AutomationError& other);
  AutomationError(AutomationError&& other) noexcept;
  AutomationError& operator=(const AutomationError& other);
  AutomationError& operator=(AutomationError&& other) noexcept;
  ~AutomationError() override;
  const char* what() const noexcept override { return what_.c_str(); }

  std::int32_t number;
  Text source;
  Text description;

 private:
  std::string what_;
};

/// The runtime's text for one of its error numbers; "Application-defined or object-defined error"
/// for any other.
TextView StandardErrorText(std::int32_t number);

/// Raises an error. Without a source it arose in the library itself; without a description it takes
/// the standard text. Number 0 can't be raised: it becomes error 5, the description kept.
[[noreturn]] void Raise(std::int32_t number, std::optional<Text> source = {},
                        std::optional<Text> description = {});

/// The exception being handled as an automation error: memory exhaustion is error 7, a foreign
/// exception error 51.
AutomationError CurrentError();

/// The error object of an apartment.
class ErrObject {
 public:
  std::int32_t Number() const { return number_; }
  const Text& Source() const { return source_; }
  const Text& Description() const { return description_; }

  /// The thread's last platform error, as captured after the latest platform call.
  std::int32_t LastDllError() const;

  void Clear() noexcept;
  void Set(const AutomationError& error);
  /// Takes over the exception being handled. Where memory is short even for that, it is error 7
  /// without texts.
  void SetToCurrent() noexcept;

  /// Makes this the calling thread's error object, or, with null, leaves the thread without one.
  static void Attach(ErrObject* object) noexcept;
  /// Leaves the exception being handled in the thread's error object, if it has one.
  static void KeepCurrent() noexcept;

 private:
  std::int32_t number_ = 0;
  Text source_;
  Text description_;
};

}  // namespace veldmark
