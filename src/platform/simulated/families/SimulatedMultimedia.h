#pragma once

#include "platform/operations/Multimedia.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The media devices of an estate's local computer.
class SimulatedMultimedia final : public Multimedia {
 public:
  explicit SimulatedMultimedia(Session& session) : session_(session) {}

  DWORD mciSendStringA(LPCSTR command, char* answer, UINT answer_size, HWND callback) override;

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
