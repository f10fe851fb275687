#pragma once

#include "automation/com/ComRef.h"

namespace veldmark {

/// Runs a script in one of the platform's engines ("VBScript", "JScript") with `object` as the
/// global `o`. Returns the platform's result; an error that the script doesn't handle is one.
HRESULT RunScript(const wchar_t* language, IDispatch& object, const wchar_t* script);

}  // namespace veldmark
