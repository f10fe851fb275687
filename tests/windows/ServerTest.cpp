#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "apartment/CStatus.h"
#include "root/SystemRoot.h"
#include "windows/BuiltServer.h"
#include "windows/CSpecimen.h"

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

/// Calls a method by its name.
HRESULT Call(IDispatch* object, std::wstring member, std::vector<VARIANT> arguments,
             com::OwnedVariant& result) {
  LPOLESTR name = member.data();
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id);
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  return object->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, &result.Get(), nullptr,
                        nullptr);
}

com::ComRef<IDispatch> StatusOf(const com::ComRef<IDispatch>& root) {
  com::OwnedVariant status;
  EXPECT_EQ(Call(root.Get(), L"GetStatusObject", {}, status), S_OK);
  return com::ComRef<IDispatch>(V_DISPATCH(&status.Get()));
}

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

/// The listener that a status object has got through its one connection point.
void Connect(const com::ComRef<IDispatch>& status, IUnknown* listener) {
  com::ComRef<IConnectionPointContainer> container;
  com::ComRef<IConnectionPoint> point;
  ::DWORD cookie = 0;
  ASSERT_EQ(status->QueryInterface(IID_IConnectionPointContainer,
                                   reinterpret_cast<void**>(container.Receive())),
            S_OK);
  const Identity events = CStatus::Describe().events->InterfaceIdentity();
  ASSERT_EQ(container->FindConnectionPoint(com::AsIid(events), point.Receive()), S_OK);
  ASSERT_EQ(point->Advise(listener, &cookie), S_OK);
}

TEST(Server, WithoutRegistrationItIsFoundAndAThreadKeepsItsStateWhateverComFrees) {
  std::thread([] {
    const ComApartment com;
    const UnregisteredServer server;
    ASSERT_TRUE(server.IsActive());
    CLSID from_name{};
    // The platform answers with an identifier of its own, for this context alone.
    EXPECT_EQ(CLSIDFromProgID(L"Veldmark2.SystemRoot", &from_name), S_OK);
    ASSERT_EQ(GetModuleHandleW(server.module_path.c_str()), nullptr);
    for (const CLSID& class_identifier : {RootClass(), from_name, RootClass()}) {
      com::ComRef<IDispatch> root;
      ASSERT_EQ(CoCreateInstance(class_identifier, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                 reinterpret_cast<void**>(root.Receive())),
                S_OK);
      EXPECT_NE(GetModuleHandleW(server.module_path.c_str()), nullptr);
      if (CSpecimen::alive == 0) {
        com::ComRef<IUnknown> listener;
        *listener.Receive() = static_cast<IUnknown*>(abi::HandOutObject(Make<CSpecimen>().Get()));
        Connect(StatusOf(root), listener.Get());
      }
      root = {};
      // The first call only notes what could go.
      CoFreeUnusedLibrariesEx(0, 0);
      CoFreeUnusedLibrariesEx(0, 0);
      EXPECT_EQ(CSpecimen::alive, 1) << "a new status object has nobody's listener";
    }
  }).join();
  EXPECT_EQ(CSpecimen::alive, 0) << "an apartment ends with its thread";
}

/// Takes all thread-local indices that the process has, but for a few, and gives them back.
class IndicesTaken {
 public:
  explicit IndicesTaken(std::size_t left = 0) {
    for (::DWORD index; (index = TlsAlloc()) != TLS_OUT_OF_INDEXES;) taken_.push_back(index);
    for (; left > 0; --left, taken_.pop_back()) TlsFree(taken_.back());
  }
  IndicesTaken(const IndicesTaken&) = delete;
  IndicesTaken& operator=(const IndicesTaken&) = delete;
  ~IndicesTaken() { std::ranges::for_each(taken_, TlsFree); }

  std::size_t Count() const { return taken_.size(); }

 private:
  std::vector<::DWORD> taken_;
};

std::size_t BytesInUse() {
  std::size_t bytes = 0;
  MEMORY_BASIC_INFORMATION region{};
  for (char* at = nullptr; VirtualQuery(at, &region, sizeof region); at += region.RegionSize) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
  }
  return bytes;
}

/// A copy of the server, a module of its own that nothing has used yet.
std::wstring Unused(const wchar_t* name) {
  EXPECT_TRUE(CopyFileW(WindowsPath(VELDMARK_BINARY_DIR, L"Veldmark2.dll").c_str(),
                        WindowsPath(VELDMARK_BINARY_DIR, name).c_str(), FALSE));
  return name;
}

TEST(Server, LoadsAndUnloadsCostTheProcessNothingWithAndWithoutAnObject) {
  const std::wstring name = Unused(L"loaded_often.dll");
  const Identity root = SystemRoot::Describe().ClassIdentity();
  for (const auto& [rounds, creates] : {std::pair(50, false), std::pair(3000, true)}) {
    std::size_t indices = 0, bytes = 0;
    for (int round = -2; round < rounds; ++round) {
      if (round == 0) {
        indices = IndicesTaken().Count();
        bytes = BytesInUse();
      }
      const BuiltServer server(name);
      ASSERT_TRUE(creates ? bool(server.Create(root)) : bool(server.Factory(root)));
      ASSERT_EQ(server.CanUnloadNow(), S_OK);
    }
    // In 32 bits the module stays from its first class object on.
    EXPECT_EQ(GetModuleHandleW(name.c_str()) != nullptr, creates || sizeof(void*) == 4)
        << "a thread's state was lost";
    EXPECT_EQ(IndicesTaken().Count(), indices);
    EXPECT_LT(BytesInUse(), bytes + 1'000'000) << creates;
  }
}

TEST(Server, AProcessWithoutThreadLocalStorageIsToldSoAndLivesOn) {
  if constexpr (sizeof(void*) == 4) {
    GTEST_SKIP() << "the 32-bit tool chain ends a process that has no index left for it";
  }
  const std::wstring name = Unused(L"without_room.dll");
  const Identity root = SystemRoot::Describe().ClassIdentity();
  for (const std::size_t left : {0u, 1u, 2u}) {
    const IndicesTaken taken(left);
    const BuiltServer server(name);
    com::ComRef<IClassFactory> factory;
    EXPECT_EQ(server.GetClassObject(RootClass(), IID_IClassFactory,
                                    reinterpret_cast<void**>(factory.Receive())),
              left < 2 ? static_cast<HRESULT>(0x800A0007) : S_OK);
    if (left < 2) {
      EXPECT_EQ(ErrorInformation(), L"Veldmark2|No thread-local storage is left in this process");
      EXPECT_EQ(server.Register(), E_OUTOFMEMORY);
    }
    factory = {};
    EXPECT_EQ(static_cast<bool>(server.Create(root)), left == 2);
  }
}

TEST(Server, TwoThreadsHaveTwoEngines) {
  const BuiltServer server;
  const auto status_of = [&server] {
    return StatusOf(server.Create(SystemRoot::Describe().ClassIdentity()));
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

TEST(Server, ThreadsShareOneSandboxOnceItsEstateCanBeRead) {
  const std::wstring broken = WindowsPath(VELDMARK_BINARY_DIR, L"broken_estate.json");
  std::ofstream(std::filesystem::path(broken)) << R"({"computers": [{"name": 7}]})";
  const std::pair<std::wstring, std::wstring> cases[] = {
      {broken, L"/computers/0/name"},
      {broken + L".missing", broken + L".missing"},
  };
  const Identity root_class = SystemRoot::Describe().ClassIdentity();
  const BuiltServer sandbox(L"Veldmark2Sandbox.dll");
  // A thread of its own has no estate yet.
  std::thread([&] {
    for (const auto& [file, place] : cases) {
      SetEnvironmentVariableW(L"VELDMARK_ESTATE", file.c_str());
      EXPECT_FALSE(sandbox.Create(root_class));
      EXPECT_THAT(ErrorInformation(), testing::HasSubstr(place));
    }
    SetEnvironmentVariableW(L"VELDMARK_ESTATE",
                            WindowsPath(VELDMARK_SOURCE_DIR, L"examples/estate.json").c_str());
    EXPECT_TRUE(sandbox.Create(root_class)) << "it may be tried again";
  }).join();

  const std::pair<const wchar_t*, bool> calls[] = {
      {L"GetFolder", false}, {L"CreateFolder", true}, {L"GetFolder", true}};
  for (const auto& [member, works] : calls) {
    std::thread([&] {
      const ComApartment com;
      com::OwnedVariant path(u"C:\\Made elsewhere"), result;
      const auto root = sandbox.Create(root_class);
      ASSERT_TRUE(root);
      EXPECT_EQ(SUCCEEDED(Call(root.Get(), member, {path.Get()}, result)), works) << member;
    }).join();
  }
  SetEnvironmentVariableW(L"VELDMARK_ESTATE", nullptr);
}

}  // namespace
}  // namespace veldmark
