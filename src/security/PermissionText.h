#pragma once

#include <cstdint>

#include "automation/Text.h"

namespace veldmark {

// The words for an entry's mask and flags, as administration tools show them. `object_type` is the
// name of the secured object's class, "CFolder". None of them raises; a mask of 0 has no words.

/// "Full Control", "Read", letters such as "RWX" for files and folders, or "Special". Empty for a
/// kind of object other than "CFile", "CFolder", "CPrinter", "CShare", "CService" and "CRegKey".
Text GetSimplifiedPermString(std::int32_t access_mask, TextView object_type);
/// The same for a printer, where the flags tell whether the entry is meant for documents.
Text GetSimplifiedPrinterPermString(std::int32_t access_mask, std::uint8_t ace_flags);

/// Every right that the mask has, as two-letter codes without separators: "RdRaRxRp". A kind of
/// object that has no codes of its own gets those of a file.
Text GetExtendedPermString(std::int32_t access_mask, TextView object_type);
Text GetExtendedPrinterPermString(std::int32_t access_mask, std::uint8_t ace_flags);

/// Where an entry of a folder applies, "This folder, subfolders and files".
Text GetInheritanceString(std::uint8_t ace_flags);
/// The same of a printer: "This printer and documents".
Text GetPrinterInheritanceString(std::uint8_t ace_flags);

}  // namespace veldmark
