// Runs a VBScript or JScript file: the part of the system's console script host that Wine's own
// lacks. It reports a script's errors with their place and a non-zero exit status, gives scripts
// their standard streams and their events, and lets messages through while a script sleeps.

#include <windows.h>

#include <activscp.h>
#include <initguid.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Dispatch.h"
#include "EventSink.h"

namespace scripthost {
namespace {

DEFINE_GUID(kActiveScript, 0xbb1a2ae1, 0xa4f9, 0x11cf, 0x8f, 0x20, 0x00, 0x80, 0x5f, 0x2c, 0xd0,
            0x64);
#ifdef _WIN64
DEFINE_GUID(kActiveScriptParse, 0xc7ef7658, 0xe1ee, 0x480e, 0x97, 0xea, 0xd5, 0x2c, 0xb4, 0xd7,
            0x6d, 0x17);
#else
DEFINE_GUID(kActiveScriptParse, 0xbb1a2ae2, 0xa4f9, 0x11cf, 0x8f, 0x20, 0x00, 0x80, 0x5f, 0x2c,
            0xd0, 0x64);
#endif
DEFINE_GUID(kActiveScriptSite, 0xdb01a1e3, 0xa42b, 0x11cf, 0x8f, 0x20, 0x00, 0x80, 0x5f, 0x2c, 0xd0,
            0x64);

constexpr int kFailed = 1;
constexpr int kNotStarted = 2;

// Why a stream last refused what was written to it; 0 while none has.
DWORD write_error = 0;

void Write(DWORD stream, std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  std::string bytes(text.size() * 3, '\0');
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(),
                                       static_cast<int>(bytes.size()), nullptr, nullptr);
  DWORD written = 0;
  for (DWORD done = 0; done < static_cast<DWORD>(size); done += written) {
    if (!WriteFile(GetStdHandle(stream), bytes.data() + done, static_cast<DWORD>(size) - done,
                   &written, nullptr)) {
      write_error = GetLastError();
      break;
    }
  }
}

std::wstring Decode(const std::string& bytes) {
  if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE') {
    std::wstring text((bytes.size() - 2) / 2, L'\0');
    memcpy(text.data(), bytes.data() + 2, text.size() * 2);
    return text;
  }
  const std::size_t skip = bytes.rfind("\xEF\xBB\xBF", 0) == 0 ? 3 : 0;
  const char* start = bytes.data() + skip;
  const int size = static_cast<int>(bytes.size() - skip);
  UINT page = CP_UTF8;
  int length = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, start, size, nullptr, 0);
  if (length == 0) {
    page = CP_ACP;
    length = MultiByteToWideChar(page, 0, start, size, nullptr, 0);
  }
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(page, 0, start, size, text.data(), length);
  return text;
}

bool ReadWhole(const std::wstring& path, std::string* bytes) {
  FILE* file = _wfopen(path.c_str(), L"rb");
  if (!file) return false;
  char part[4096];
  for (std::size_t size; (size = fread(part, 1, sizeof part, file)) > 0;) bytes->append(part, size);
  fclose(file);
  return true;
}

// The system's text of an error that came without one.
std::wstring Description(HRESULT code) {
  wchar_t text[512];
  // Wine has no text for this one, which scripts meet.
  if (code == DISP_E_DIVBYZERO) {
    return L"Division by zero";
  }
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(code), 0, text, 512, nullptr);
  while (length > 0 && (text[length - 1] == L'\r' || text[length - 1] == L'\n')) --length;
  if (length > 0) return std::wstring(text, length);
  swprintf(text, 512, L"error 0x%08lX", static_cast<unsigned long>(code));
  return text;
}

// The exit status of a script that ended with this one. A script whose output got lost has failed,
// though it could do all it had to.
int StatusWithOutput(int status) {
  if (write_error == 0) return status;
  // A reader that went away has read all that it wanted.
  const bool left = write_error == ERROR_PIPE_NOT_CONNECTED || write_error == ERROR_NO_DATA ||
                    write_error == ERROR_BROKEN_PIPE;
  if (!left) {
    Write(STD_ERROR_HANDLE, L"The output could not be written: " +
                                Description(HRESULT_FROM_WIN32(write_error)) + L"\n");
  }
  return status != 0 ? status : kFailed;
}

void TurnMessageLoop() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

class Host final : public IActiveScriptSite {
 public:
  explicit Host(std::wstring path) : path_(std::move(path)) {}
  virtual ~Host() = default;

  // Runs the script and returns the exit status.
  int Run(const wchar_t* language, const std::wstring& text, std::vector<std::wstring> arguments);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, kActiveScriptSite)) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    *object = static_cast<IActiveScriptSite*>(this);
    return S_OK;
  }
  // The host outlives its engine.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetLCID(LCID* locale) override {
    *locale = LOCALE_USER_DEFAULT;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD mask, IUnknown** item,
                                        ITypeInfo** type) override {
    if (mask & SCRIPTINFO_IUNKNOWN) {
      *item = wscript_.Get();
      wscript_->AddRef();
    }
    if (mask & SCRIPTINFO_ITYPEINFO) *type = nullptr;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override;
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

 private:
  void Declare(std::vector<std::wstring> arguments);
  HRESULT Create(const Call& call);
  HRESULT Connect(const Call& call, IDispatch* source, std::wstring prefix);
  void Disconnect(IDispatch* source);
  [[noreturn]] void Quit(int status);

  std::wstring path_;
  int status_ = 0;
  Reference<Scriptable> wscript_;
  Reference<IActiveScript> engine_;
  std::vector<Reference<EventSink>> sinks_;
};

HRESULT Host::OnScriptError(IActiveScriptError* error) {
  EXCEPINFO info{};
  DWORD context = 0;
  ULONG line = 0;
  LONG column = 0;
  error->GetExceptionInfo(&info);
  error->GetSourcePosition(&context, &line, &column);
  if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
  std::wstring text =
      path_ + L"(" + std::to_wstring(line + 1) + L", " + std::to_wstring(column + 1) + L") ";
  if (SysStringLen(info.bstrSource) != 0) text += std::wstring(info.bstrSource) + L": ";
  if (SysStringLen(info.bstrDescription) != 0) {
    text += info.bstrDescription;
  } else {
    text += Description(info.scode);
  }
  Write(STD_ERROR_HANDLE, text + L"\n");
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrHelpFile);
  status_ = kFailed;
  return S_OK;
}

void Host::Quit(int status) {
  // A script may quit from the depth of its calls; the engine can't be unwound from there.
  for (auto& sink : sinks_) sink->Disconnect();
  ExitProcess(static_cast<UINT>(StatusWithOutput(status)));
}

HRESULT Host::Connect(const Call& call, IDispatch* source, std::wstring prefix) {
  Reference<IDispatch> script;
  if (!source || FAILED(engine_->GetScriptDispatch(nullptr, script.Receive()))) {
    return call.Fail(E_INVALIDARG, L"There is no object to connect to.");
  }
  Reference<EventSink> sink =
      EventSink::Connect(source, script.Get(), std::move(prefix), [this] { Quit(kFailed); });
  if (!sink) return call.Fail(E_NOINTERFACE, L"The object has no events.");
  sinks_.push_back(std::move(sink));
  return S_OK;
}

void Host::Disconnect(IDispatch* source) {
  std::erase_if(sinks_, [&](Reference<EventSink>& sink) {
    if (!sink->Listens(source)) return false;
    sink->Disconnect();
    return true;
  });
}

HRESULT Host::Create(const Call& call) {
  const std::wstring name = call.Text(0);
  CLSID id;
  Reference<IDispatch> object;
  HRESULT result = CLSIDFromProgID(name.c_str(), &id);
  if (SUCCEEDED(result)) {
    result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                              IID_IDispatch, reinterpret_cast<void**>(object.Receive()));
  }
  if (FAILED(result)) return call.Fail(result, L"Could not create object named \"" + name + L"\".");
  if (call.arguments.size() > 1) {
    result = Connect(call, object.Get(), call.Text(1));
    if (FAILED(result)) return result;
  }
  call.result->vt = VT_DISPATCH;
  call.result->pdispVal = object.Release();
  return S_OK;
}

Reference<Scriptable> Stream(DWORD stream) {
  Reference<Scriptable> object(new Scriptable);
  object->Add(L"Write", [stream](const Call& call) {
    Write(stream, call.Text(0));
    return S_OK;
  });
  object->Add(L"WriteLine", [stream](const Call& call) {
    Write(stream, call.Text(0) + L"\n");
    return S_OK;
  });
  object->Add(L"WriteBlankLines", [stream](const Call& call) {
    Write(stream, std::wstring(static_cast<std::size_t>(std::max(0L, call.Number(0, 1))), L'\n'));
    return S_OK;
  });
  object->Add(L"Close", [](const Call&) { return S_OK; });
  return object;
}

Reference<Scriptable> Input() {
  Reference<Scriptable> object(new Scriptable);
  object->Add(L"ReadLine", [](const Call& call) -> HRESULT {
    std::string line;
    int byte;
    while ((byte = getchar()) != EOF && byte != '\n') line.push_back(static_cast<char>(byte));
    if (byte == EOF && line.empty()) return call.Fail(0x800A003E, L"Input past end of file");
    if (!line.empty() && line.back() == '\r') line.pop_back();
    *call.result = Value(Decode(line)).Detach();
    return S_OK;
  });
  object->Add(L"ReadAll", [](const Call& call) {
    std::string bytes;
    for (int byte; (byte = getchar()) != EOF;) bytes.push_back(static_cast<char>(byte));
    *call.result = Value(Decode(bytes)).Detach();
    return S_OK;
  });
  object->Add(L"AtEndOfStream", [](const Call& call) {
    const int byte = getchar();
    if (byte != EOF) ungetc(byte, stdin);
    call.result->vt = VT_BOOL;
    call.result->boolVal = byte == EOF ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  });
  return object;
}

Reference<Scriptable> Arguments(const std::vector<std::wstring>& texts) {
  std::vector<Value> values;
  for (const std::wstring& text : texts) values.emplace_back(text);
  Reference<Scriptable> object(new Scriptable);
  object->Add(L"Item", [values](const Call& call) {
    const long index = call.Number(0, -1);
    if (index < 0 || static_cast<std::size_t>(index) >= values.size()) {
      return call.Fail(0x800A0009, L"Subscript out of range");
    }
    return VariantCopy(call.result, Readable(&values[static_cast<std::size_t>(index)]));
  });
  for (const wchar_t* name : {L"Count", L"Length"}) {
    object->Add(name, [count = static_cast<long>(values.size())](const Call& call) {
      *call.result = Value(count).Detach();
      return S_OK;
    });
  }
  object->SetEnumerator([values](const Call& call) {
    call.result->vt = VT_UNKNOWN;
    call.result->punkVal = Enumerate(values).Release();
    return S_OK;
  });
  return object;
}

void Host::Declare(std::vector<std::wstring> arguments) {
  wscript_ = Reference<Scriptable>(new Scriptable);
  const auto text = [&](const wchar_t* name, std::wstring value) {
    wscript_->Add(name, [value = std::move(value)](const Call& call) {
      *call.result = Value(value).Detach();
      return S_OK;
    });
  };
  const auto object = [&](const wchar_t* name, const Reference<Scriptable>& value) {
    wscript_->Add(name, [value](const Call& call) {
      if (!call.arguments.empty()) return value->Default(call);
      *call.result = Value(value.Get()).Detach();
      return S_OK;
    });
  };
  text(L"Name", L"Script host");
  text(L"Version", L"5.8");
  text(L"ScriptFullName", path_);
  text(L"ScriptName", path_.substr(path_.find_last_of(L'\\') + 1));
  object(L"Arguments", Arguments(arguments));
  object(L"StdOut", Stream(STD_OUTPUT_HANDLE));
  object(L"StdErr", Stream(STD_ERROR_HANDLE));
  object(L"StdIn", Input());
  wscript_->Add(L"Echo", [](const Call& call) {
    std::wstring line;
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
      if (i != 0) line += L' ';
      line += call.Text(i);
    }
    Write(STD_OUTPUT_HANDLE, line + L"\n");
    return S_OK;
  });
  wscript_->Add(L"Sleep", [](const Call& call) {
    const ULONGLONG end =
        GetTickCount64() + static_cast<ULONGLONG>(std::max(0L, call.Number(0, 0)));
    for (;;) {
      TurnMessageLoop();
      const ULONGLONG now = GetTickCount64();
      if (now >= end) return S_OK;
      MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    }
  });
  wscript_->Add(L"Quit",
                [this](const Call& call) -> HRESULT { Quit(static_cast<int>(call.Number(0, 0))); });
  wscript_->Add(L"CreateObject", [this](const Call& call) { return Create(call); });
  wscript_->Add(L"ConnectObject", [this](const Call& call) {
    return Connect(call, call.Object(0).Get(), call.Text(1));
  });
  wscript_->Add(L"DisconnectObject", [this](const Call& call) {
    Disconnect(call.Object(0).Get());
    return S_OK;
  });
}

int Host::Run(const wchar_t* language, const std::wstring& text,
              std::vector<std::wstring> arguments) {
  Declare(std::move(arguments));
  CLSID id;
  Reference<IActiveScriptParse> parser;
  if (FAILED(CLSIDFromProgID(language, &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, kActiveScript,
                              reinterpret_cast<void**>(engine_.Receive()))) ||
      FAILED(engine_->QueryInterface(kActiveScriptParse,
                                     reinterpret_cast<void**>(parser.Receive()))) ||
      FAILED(parser->InitNew()) || FAILED(engine_->SetScriptSite(this)) ||
      FAILED(engine_->AddNamedItem(L"WScript", SCRIPTITEM_ISVISIBLE))) {
    Write(STD_ERROR_HANDLE, std::wstring(L"There is no engine for ") + language + L".\n");
    return kFailed;
  }
  EXCEPINFO info{};
  HRESULT result = parser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 0,
                                           SCRIPTTEXT_ISVISIBLE, nullptr, &info);
  if (SUCCEEDED(result)) result = engine_->SetScriptState(SCRIPTSTATE_STARTED);
  // The engine has told OnScriptError what went wrong; this is for one that hasn't.
  if (FAILED(result) && status_ == 0) {
    Write(STD_ERROR_HANDLE, path_ + L" could not be run.\n");
    status_ = kFailed;
  }
  for (auto& sink : sinks_) sink->Disconnect();
  sinks_.clear();
  engine_->Close();
  return StatusWithOutput(status_);
}

// Ends the script that its engine broke down under, before the system shows that on standard
// output.
LONG WINAPI Collapse(EXCEPTION_POINTERS* exception) {
  wchar_t text[64];
  swprintf(text, 64, L"The script broke its engine: exception 0x%08lX.\n",
           static_cast<unsigned long>(exception->ExceptionRecord->ExceptionCode));
  Write(STD_ERROR_HANDLE, text);
  TerminateProcess(GetCurrentProcess(), kFailed);
  return EXCEPTION_EXECUTE_HANDLER;
}

// Creates an object of a class and lets it go. Where that fails, says why: a script would see no
// more than that it can't be created.
bool CanCreate(const wchar_t* name) {
  CLSID id;
  Reference<IUnknown> object;
  HRESULT result = CLSIDFromProgID(name, &id);
  SetErrorInfo(0, nullptr);
  if (SUCCEEDED(result)) {
    result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                              reinterpret_cast<void**>(object.Receive()));
  }
  if (SUCCEEDED(result)) return true;
  std::wstring reason;
  Reference<IErrorInfo> information;
  if (GetErrorInfo(0, information.Receive()) == S_OK) {
    BSTR text = nullptr;
    information->GetDescription(&text);
    reason.assign(text, text + SysStringLen(text));
    SysFreeString(text);
  }
  if (reason.empty()) reason = std::wstring(name) + L": " + Description(result);
  Write(STD_ERROR_HANDLE, reason + L"\n");
  return false;
}

}  // namespace
}  // namespace scripthost

int wmain(int count, wchar_t** words) {
  using namespace scripthost;
  SetUnhandledExceptionFilter(Collapse);
  std::vector<std::wstring> arguments(words + 1, words + count);
  std::wstring needed;
  if (arguments.size() > 1 && arguments[0] == L"--needs") {
    needed = arguments[1];
    arguments.erase(arguments.begin(), arguments.begin() + 2);
  }
  if (arguments.empty()) {
    Write(STD_ERROR_HANDLE, L"usage: scripthost [--needs CLASS] SCRIPT [ARG...]\n");
    return kFailed;
  }
  const std::wstring path = arguments[0];
  arguments.erase(arguments.begin());
  std::string bytes;
  if (!ReadWhole(path, &bytes)) {
    Write(STD_ERROR_HANDLE, L"Can not find script file \"" + path + L"\".\n");
    return kFailed;
  }
  const std::size_t dot = path.find_last_of(L'.');
  const bool jscript = dot != std::wstring::npos && _wcsicmp(path.c_str() + dot, L".js") == 0;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  int status = kNotStarted;
  if (needed.empty() || CanCreate(needed.c_str())) {
    Host host(path);
    status = host.Run(jscript ? L"JScript" : L"VBScript", Decode(bytes), std::move(arguments));
  }
  CoUninitialize();
  return status;
}
