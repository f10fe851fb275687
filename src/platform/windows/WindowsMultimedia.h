#pragma once

#include "platform/operations/Multimedia.h"

namespace veldmark {

/// The media devices of the operating system that this process runs on.
class WindowsMultimedia final : public Multimedia {
 public:
  DWORD mciSendStringA(LPCSTR command, char* answer, UINT answer_size, HWND callback) override;
};

}  // namespace veldmark
