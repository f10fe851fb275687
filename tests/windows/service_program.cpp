// A service for tests: service_program.exe NAME [WORD...]. By its words it is
//
//   pausable   takes pause and continue
//   stubborn   doesn't take stop; the control 128 ends it all the same
//   slow       needs four checkpoints, 300 milliseconds apart, to start

#include <windows.h>

#include <set>
#include <string>

namespace {

std::wstring name;
std::set<std::wstring> words;
SERVICE_STATUS_HANDLE handle = nullptr;
HANDLE ended = nullptr;

void Tell(DWORD state, DWORD check_point = 0) {
  SERVICE_STATUS status{};
  status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
  status.dwCurrentState = state;
  if (state == SERVICE_RUNNING || state == SERVICE_PAUSED) {
    if (!words.contains(L"stubborn")) status.dwControlsAccepted |= SERVICE_ACCEPT_STOP;
    if (words.contains(L"pausable")) status.dwControlsAccepted |= SERVICE_ACCEPT_PAUSE_CONTINUE;
  }
  status.dwCheckPoint = check_point;
  status.dwWaitHint = check_point == 0 ? 0 : 200;
  SetServiceStatus(handle, &status);
}

DWORD WINAPI Control(DWORD control, DWORD, void*, void*) {
  constexpr DWORD kEnd = 128;
  switch (control) {
    case SERVICE_CONTROL_STOP:
    case kEnd:
      Tell(SERVICE_STOP_PENDING, 1);
      SetEvent(ended);
      return NO_ERROR;
    case SERVICE_CONTROL_PAUSE:
      Tell(SERVICE_PAUSED);
      return NO_ERROR;
    case SERVICE_CONTROL_CONTINUE:
      Tell(SERVICE_RUNNING);
      return NO_ERROR;
    case SERVICE_CONTROL_INTERROGATE:
      return NO_ERROR;
    default:
      return ERROR_CALL_NOT_IMPLEMENTED;
  }
}

void WINAPI ServiceMain(DWORD, wchar_t**) {
  handle = RegisterServiceCtrlHandlerExW(name.c_str(), &Control, nullptr);
  if (words.contains(L"slow")) {
    for (DWORD point = 1; point <= 4; ++point) {
      Tell(SERVICE_START_PENDING, point);
      Sleep(300);
    }
  }
  Tell(SERVICE_RUNNING);
  WaitForSingleObject(ended, INFINITE);
  Tell(SERVICE_STOPPED);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  name = argv[1];
  words.insert(argv + 2, argv + argc);
  ended = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const SERVICE_TABLE_ENTRYW table[] = {{name.data(), &ServiceMain}, {nullptr, nullptr}};
  return StartServiceCtrlDispatcherW(table) ? 0 : 1;
}
