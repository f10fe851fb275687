#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// What EnumPrintersW lists: the printers of the named server.
inline constexpr DWORD kPrinterEnumName = 0x8;

inline constexpr DWORD kPrinterAttributeShared = 0x8;
inline constexpr DWORD kPrinterAttributeLocal = 0x40;

// The texts, the device mode and the descriptor lie in the same buffer as the record itself, behind
// all records; each may be null, and lie at an odd address.
struct PRINTER_INFO_2W {
  LPWSTR pServerName;   // "\\srv"; null where no server was named
  LPWSTR pPrinterName;  // "\\srv\printer"; where no server was named, "printer"
  LPWSTR pShareName;
  LPWSTR pPortName;  // several are parted by commas
  LPWSTR pDriverName;
  LPWSTR pComment;
  LPWSTR pLocation;
  void* pDevMode;
  LPWSTR pSepFile;
  LPWSTR pPrintProcessor;
  LPWSTR pDatatype;
  LPWSTR pParameters;
  void* pSecurityDescriptor;
  DWORD Attributes;
  DWORD Priority;
  DWORD DefaultPriority;
  DWORD StartTime;  // minutes since midnight, UTC; as UntilTime 0 for a printer that always prints
  DWORD UntilTime;
  DWORD Status;
  DWORD cJobs;
  DWORD AveragePPM;  // pages a minute
};

// Printers of a computer.
class Printing {
 public:
  virtual ~Printing() = default;

  // Lists the printers of the server `name` ("\\srv"; null or empty: this computer), level 2:
  // PRINTER_INFO_2W. `flags` is kPrinterEnumName. `size` bytes at `buffer` take the records and
  // what they point at, and `*needed` tells how many bytes that are, also where they don't
  // suffice; `*returned` is the number of records. Without printers it needs nothing.
  //
  // Returns 0 on failure: 5 denied, 122 the buffer is too small, 123 the name isn't "\\srv", 124 an
  // unknown level, 1004 flags without any kind of printer, 1722 the server can't be reached or
  // doesn't print, 1780 a null pointer for a count, 1784 a null buffer with a size.
  virtual BOOL EnumPrintersW(DWORD flags, LPCWSTR name, DWORD level, BYTE* buffer, DWORD size,
                             DWORD* needed, DWORD* returned) = 0;
};

}  // namespace veldmark
