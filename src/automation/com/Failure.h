#pragma once

#include "automation/Error.h"
#include "automation/com/Sdk.h"

namespace veldmark::com {

/// The failure code of an error number: 1 to 65535 travel in the facility that scripts read back as
/// the bare number, negative numbers are failure codes already.
HRESULT ToFailure(std::int32_t number);

/// The error number of a failure code: the inverse of `ToFailure`, and the runtime's number for the
/// codes of a refused call.
std::int32_t ToNumber(HRESULT failure);

/// The code that refuses a call for an argument with this conversion error; `DISP_E_EXCEPTION` for
/// one that has no code of its own.
HRESULT ToRefusal(std::int32_t number);

/// Leaves an error as the thread's error information, of interface `iid`, and returns its failure
/// code.
HRESULT ReportError(const AutomationError& error, const IID& iid) noexcept;

/// Fills the exception record of a late-bound call. Its texts belong to the caller.
void FillException(EXCEPINFO& exception, const AutomationError& error) noexcept;

/// Takes the error out of an exception record and frees its texts.
AutomationError TakeException(EXCEPINFO& exception);

}  // namespace veldmark::com
