#include "platform/simulated/families/SimulatedMultimedia.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kInvalidDeviceName = 263;
constexpr DWORD kMissingCommand = 267;

}  // namespace

DWORD SimulatedMultimedia::mciSendStringA(LPCSTR command, char* answer, UINT answer_size, HWND) {
  const std::string_view text = command == nullptr ? std::string_view() : command;
  const Call call = session_.Begin("mciSendStringA", FromUtf8(text));
  if (const DWORD fault = call.fault()) return fault;
  if (answer != nullptr && answer_size > 0) *answer = '\0';
  if (text.empty()) return kMissingCommand;
  return session_.estate.local().has_disc_device() ? 0 : kInvalidDeviceName;
}

}  // namespace veldmark::simulated
