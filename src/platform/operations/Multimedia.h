#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// The control interface of media devices.
class Multimedia {
 public:
  virtual ~Multimedia() = default;

  // Carries out a command such as "set CDAudio door open" and writes its answer, NUL-terminated, to
  // `answer` of `answer_size` bytes (may be null). Returns 0 or a code of its own kind, for example
  // 263 where there is no such device.
  virtual DWORD mciSendStringA(LPCSTR command, char* answer, UINT answer_size, HWND callback) = 0;
};

}  // namespace veldmark
