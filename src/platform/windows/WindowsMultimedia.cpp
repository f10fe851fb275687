#include "platform/windows/WindowsMultimedia.h"

#include <windows.h>

#include <mmsystem.h>

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

DWORD WindowsMultimedia::mciSendStringA(LPCSTR command, char* answer, UINT answer_size,
                                        HWND callback) {
  return Recorded([&] { return ::mciSendStringA(command, answer, answer_size, Sdk(callback)); });
}

}  // namespace veldmark
