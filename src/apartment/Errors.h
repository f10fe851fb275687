#pragma once

#include <utility>

#include "apartment/Apartment.h"
#include "automation/Error.h"

namespace veldmark {

/// The re-raising handler in its full form: what the body raises goes on to the caller with number,
/// source and description unchanged, and is left in `Err`.
template <class Body>
decltype(auto) ReRaising(Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    AutomationError error = CurrentError();
    Err().Set(error);
    throw error;
  }
}

/// The re-raising handler in its short form: the error goes on as one of `class_name`,
/// "Veldmark2.CFolder".
template <class Body>
decltype(auto) ReRaisingAs(TextView class_name, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    AutomationError error = CurrentError();
    error.source = SourceOf(class_name);
    Err().Set(error);
    throw error;
  }
}

/// One statement in swallowing mode: what it raises is left in `Err` to be tested, and the next
/// statement runs. True if the statement came to its end.
template <class Statement>
bool Swallow(Statement&& statement) noexcept {
  try {
    std::forward<Statement>(statement)();
    return true;
  } catch (...) {
    Err().SetToCurrent();
    return false;
  }
}

}  // namespace veldmark
