#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "root/ObjectModel.h"
#include "root/SystemRoot.h"
#include "windows/BuiltServer.h"
#include "windows/Script.h"

namespace veldmark {
namespace {

const CLSID& RootClass() {
  static const Identity identity = SystemRoot::Describe().ClassIdentity();
  return reinterpret_cast<const CLSID&>(identity);
}

/// A thread's use of COM.
struct ComApartment {
  ComApartment() { CoInitialize(nullptr); }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
  ~ComApartment() { CoUninitialize(); }
};

/// A folder with the server and its manifest, in use while this lives: no registration is needed.
class UnregisteredServer {
 public:
  UnregisteredServer() {
    const std::wstring folder = WindowsPath(VELDMARK_BINARY_DIR, L"unregistered");
    CreateDirectoryW(folder.c_str(), nullptr);
    module_path = folder + L"\\Veldmark2.dll";
    const std::wstring manifest = folder + L"\\Veldmark2.manifest";
    EXPECT_TRUE(CopyFileW(WindowsPath(VELDMARK_BINARY_DIR, L"Veldmark2.dll").c_str(),
                          module_path.c_str(), FALSE));
    EXPECT_TRUE(CopyFileW(
        WindowsPath(VELDMARK_SOURCE_DIR, L"examples/unregistered/Veldmark2.manifest").c_str(),
        manifest.c_str(), FALSE));
    ACTCTXW request{};
    request.cbSize = sizeof request;
    request.lpSource = manifest.c_str();
    context_ = CreateActCtxW(&request);
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
  }
  UnregisteredServer(const UnregisteredServer&) = delete;
  UnregisteredServer& operator=(const UnregisteredServer&) = delete;
  ~UnregisteredServer() {
    if (active_) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  }

  bool IsActive() const { return active_; }

  std::wstring module_path;

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

TEST(Server, ClassObjectsKeepTheRulesOfAnInProcessServer) {
  const BuiltServer server;
  void* out = &out;
  EXPECT_EQ(server.GetClassObject(IID_IUnknown, IID_IClassFactory, &out),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(out, nullptr);
  out = &out;
  EXPECT_EQ(server.GetClassObject(RootClass(), IID_IStream, &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(server.GetClassObject(RootClass(), IID_IClassFactory, nullptr), E_POINTER);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);

  {
    const auto factory = server.Factory(SystemRoot::Describe().ClassIdentity());
    ASSERT_TRUE(factory);
    EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
    out = &out;
    EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
    out = &out;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  }
  EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
  server.Factory(SystemRoot::Describe().ClassIdentity())->LockServer(FALSE);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST(Server, EveryClassCanBeCreatedAndLetGo) {
  const BuiltServer server;
  for (const Interface* table : ObjectModel()) {
    SCOPED_TRACE(ToUtf8(table->name));
    const Identity own = table->InterfaceIdentity();
    {
      const auto object = server.Create(table->ClassIdentity());
      ASSERT_TRUE(object);
      com::ComRef<IDispatch> face;
      EXPECT_EQ(object->QueryInterface(reinterpret_cast<REFIID>(own),
                                       reinterpret_cast<void**>(face.Receive())),
                S_OK);
      EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
  }
}

TEST(Server, WithoutRegistrationItIsLoadedForAnObjectAndUnloadedAfterTheLast) {
  const ComApartment com;
  const UnregisteredServer server;
  ASSERT_TRUE(server.IsActive());
  CLSID from_name{};
  // The platform answers with an identifier of its own, for this context alone.
  EXPECT_EQ(CLSIDFromProgID(L"Veldmark2.SystemRoot", &from_name), S_OK);

  const auto is_loaded = [&server] {
    return GetModuleHandleW(server.module_path.c_str()) != nullptr;
  };
  const auto free_unused = [] {
    // The first call only notes what could go.
    CoFreeUnusedLibrariesEx(0, 0);
    CoFreeUnusedLibrariesEx(0, 0);
  };
  ASSERT_FALSE(is_loaded());
  for (const CLSID& class_identifier : {RootClass(), from_name, RootClass()}) {
    com::ComRef<IDispatch> root;
    ASSERT_EQ(CoCreateInstance(class_identifier, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(root.Receive())),
              S_OK);
    EXPECT_TRUE(is_loaded());
    auto computer = ObjectFrom(root.Get(), L"GetMyComputer");
    ASSERT_TRUE(computer);
    root = {};
    free_unused();
    EXPECT_TRUE(is_loaded()) << "an object was left";
    computer = {};
    free_unused();
    EXPECT_FALSE(is_loaded()) << "nothing of the client's was left";
  }
}

TEST(Server, TwoThreadsHaveTwoEngines) {
  const BuiltServer server;
  const auto status_of = [&server] {
    const auto root = server.Create(SystemRoot::Describe().ClassIdentity());
    return ObjectFrom(root.Get(), L"GetStatusObject");
  };
  const auto here = status_of();
  ASSERT_TRUE(here);
  EXPECT_EQ(status_of().Get(), here.Get());
  std::thread([&] {
    const auto there = status_of();
    ASSERT_TRUE(there);
    EXPECT_NE(there.Get(), here.Get());
    EXPECT_EQ(status_of().Get(), there.Get());
  }).join();
  EXPECT_EQ(status_of().Get(), here.Get()) << "the other thread's end touched this one";
}

TEST(Server, AThreadThatEndsOrLivesOnDoesNotHinderTheUnload) {
  // Each round leaves an engine behind: of a thread that has ended, and of one that is still there.
  for (int round = 0; round < 3; ++round) {
    HANDLE used = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE unloaded = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread lives_on;
    {
      const BuiltServer server;
      std::thread([&] {
        EXPECT_TRUE(server.Create(SystemRoot::Describe().ClassIdentity()));
      }).join();
      lives_on = std::thread([&] {
        EXPECT_TRUE(server.Create(SystemRoot::Describe().ClassIdentity()));
        SetEvent(used);
        WaitForSingleObject(unloaded, INFINITE);
      });
      WaitForSingleObject(used, INFINITE);
      EXPECT_EQ(server.CanUnloadNow(), S_OK);
    }
    EXPECT_EQ(GetModuleHandleW(WindowsPath(VELDMARK_BINARY_DIR, L"Veldmark2.dll").c_str()),
              nullptr);
    SetEvent(unloaded);
    lives_on.join();
    CloseHandle(used);
    CloseHandle(unloaded);
  }
}

TEST(Server, AnEstateThatCannotBeReadIsToldWithItsPlace) {
  const std::wstring estate = WindowsPath(VELDMARK_BINARY_DIR, L"broken_estate.json");
  std::ofstream(std::filesystem::path(estate)) << R"({"computers": [{"name": 7}]})";
  const std::pair<std::wstring, std::wstring> cases[] = {
      {estate, L"/computers/0/name"},
      {estate + L".missing", estate + L".missing"},
  };
  const BuiltServer sandbox(L"Veldmark2Sandbox.dll");
  for (const auto& [file, place] : cases) {
    SetEnvironmentVariableW(L"VELDMARK_ESTATE", file.c_str());
    SetErrorInfo(0, nullptr);
    EXPECT_FALSE(sandbox.Create(SystemRoot::Describe().ClassIdentity()));
    com::ComRef<IErrorInfo> information;
    ASSERT_EQ(GetErrorInfo(0, information.Receive()), S_OK);
    BSTR text = nullptr;
    information->GetDescription(&text);
    EXPECT_NE(std::wstring(text ? text : L"").find(place), std::wstring::npos);
    SysFreeString(text);
  }
  SetEnvironmentVariableW(L"VELDMARK_ESTATE", nullptr);
}

// Behind the test of unreadable estates, since a module that has one keeps it.
TEST(Server, TheThreadsOfAProcessShareOneSandbox) {
  SetEnvironmentVariableW(L"VELDMARK_ESTATE",
                          WindowsPath(VELDMARK_SOURCE_DIR, L"examples/estate.json").c_str());
  const BuiltServer sandbox(L"Veldmark2Sandbox.dll");
  const auto run_on_a_thread = [&sandbox](const wchar_t* script) {
    HRESULT result = E_FAIL;
    std::thread([&] {
      const ComApartment com;
      const auto root = sandbox.Create(SystemRoot::Describe().ClassIdentity());
      if (root) result = RunScript(L"VBScript", *root.Get(), script);
    }).join();
    return result;
  };
  EXPECT_TRUE(FAILED(run_on_a_thread(L"o.GetFolder \"C:\\Made elsewhere\"")));
  EXPECT_EQ(run_on_a_thread(L"o.CreateFolder \"C:\\Made elsewhere\""), S_OK);
  EXPECT_EQ(run_on_a_thread(L"o.GetFolder \"C:\\Made elsewhere\""), S_OK);
  SetEnvironmentVariableW(L"VELDMARK_ESTATE", nullptr);
}

}  // namespace
}  // namespace veldmark
