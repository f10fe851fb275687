#include "automation/Error.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "automation/LastError.h"

namespace veldmark {
namespace {

struct StandardText {
  std::int32_t number;
  TextView text;
};

constexpr StandardText kStandardTexts[] = {
    {3, u"Return without GoSub"},
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {10, u"This array is fixed or temporarily locked"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {14, u"Out of string space"},
    {28, u"Out of stack space"},
    {35, u"Sub or Function not defined"},
    {48, u"Error in loading DLL"},
    {51, u"Internal error"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {54, u"Bad file mode"},
    {55, u"File already open"},
    {57, u"Device I/O error"},
    {58, u"File already exists"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {67, u"Too many files"},
    {68, u"Device unavailable"},
    {70, u"Permission denied"},
    {71, u"Disk not ready"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
    {91, u"Object variable or With block variable not set"},
    {92, u"For loop not initialized"},
    {94, u"Invalid use of Null"},
    {424, u"Object required"},
    {429, u"ActiveX component can't create object"},
    {430, u"Class does not support Automation or does not support expected interface"},
    {438, u"Object doesn't support this property or method"},
    {440, u"Automation error"},
    {445, u"Object doesn't support this action"},
    {446, u"Object doesn't support named arguments"},
    {447, u"Object doesn't support current locale setting"},
    {448, u"Named argument not found"},
    {449, u"Argument not optional"},
    {450, u"Wrong number of arguments or invalid property assignment"},
    {451,
     u"Property let procedure not defined and property get procedure did not return an object"},
    {453, u"Specified DLL function not found"},
    {457, u"This key is already associated with an element of this collection"},
};

// A plain pointer, so that nothing has to end with the thread.
thread_local ErrObject* attached = nullptr;

}  // namespace

AutomationError::AutomationError(const AutomationError& other) = default;
AutomationError::AutomationError(AutomationError&& other) noexcept = default;
AutomationError& AutomationError::operator=(const AutomationError& other) = default;
AutomationError& AutomationError::operator=(AutomationError&& other) noexcept = default;
AutomationError::~AutomationError() = default;

AutomationError::AutomationError(std::int32_t error_number, Text error_source,
                                 Text error_description)
    : number(error_number),
      source(std::move(error_source)),
      description(std::move(error_description)),
      what_(std::to_string(number) + " " + ToUtf8(description)) {}

Text SourceOf(TextView class_name) { return Text(kLibraryName) + u"." + Text(class_name); }

TextView StandardErrorText(std::int32_t number) {
  const auto* found = std::ranges::lower_bound(kStandardTexts, number, {}, &StandardText::number);
  return found != std::end(kStandardTexts) && found->number == number
             ? found->text
             : TextView(u"Application-defined or object-defined error");
}

void Raise(std::int32_t number, std::optional<Text> source, std::optional<Text> description) {
  if (number == 0) number = runtime_error::kInvalidCall;
  if (!source) source = Text(kLibraryName);
  if (!description) description = Text(StandardErrorText(number));
  throw AutomationError(number, *std::move(source), *std::move(description));
}

AutomationError CurrentError() {
  const auto standard = [](std::int32_t number) {
    return AutomationError(number, Text(kLibraryName), Text(StandardErrorText(number)));
  };
  try {
    throw;
  } catch (const AutomationError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return standard(runtime_error::kOutOfMemory);
  } catch (const std::length_error&) {
    return standard(runtime_error::kOutOfMemory);
  } catch (...) {
    return standard(runtime_error::kInternalError);
  }
}

std::int32_t ErrObject::LastDllError() const {
  return static_cast<std::int32_t>(LastPlatformError());
}

void ErrObject::Clear() noexcept {
  number_ = 0;
  source_.clear();
  description_.clear();
}

void ErrObject::Set(const AutomationError& error) {
  number_ = error.number;
  source_ = error.source;
  description_ = error.description;
}

void ErrObject::SetToCurrent() noexcept {
  try {
    Set(CurrentError());
  } catch (...) {
    Clear();
    number_ = runtime_error::kOutOfMemory;
  }
}

void ErrObject::Attach(ErrObject* object) noexcept { attached = object; }

void ErrObject::KeepCurrent() noexcept {
  if (attached) attached->SetToCurrent();
}

}  // namespace veldmark
