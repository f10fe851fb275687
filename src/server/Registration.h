#pragma once

#include <windows.h>

namespace veldmark {

/// Registers the classes, interfaces and the type library of this module, for the machine or, where
/// that is denied, for the user. A registration that fails leaves the registry as it was.
HRESULT RegisterServer() noexcept;

/// Takes the registration back, the machine's and the user's. What a server of the other word size
/// still needs stays.
HRESULT UnregisterServer() noexcept;

}  // namespace veldmark
