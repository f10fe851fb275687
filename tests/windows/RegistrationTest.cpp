#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

#include "root/ObjectModel.h"
#include "windows/BuiltServer.h"

namespace veldmark {
namespace {

using Snapshot = std::map<std::wstring, std::wstring>;

/// All keys and values below a key; a key stands with a trailing backslash.
void Collect(HKEY parent, const std::wstring& path, Snapshot& snapshot) {
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = std::size(name);
    BYTE data[2048];
    DWORD size = sizeof data;
    DWORD type = 0;
    if (RegEnumValueW(parent, i, name, &length, nullptr, &type, data, &size) != ERROR_SUCCESS)
      break;
    snapshot[path + L"@" + name] =
        std::wstring(reinterpret_cast<wchar_t*>(data), size / sizeof(wchar_t)).c_str();
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = std::size(name);
    if (RegEnumKeyExW(parent, i, name, &length, nullptr, nullptr, nullptr, nullptr)) break;
    const std::wstring below = path + name + L"\\";
    snapshot[below] = L"";
    HKEY key = nullptr;
    if (RegOpenKeyExW(parent, name, 0, KEY_READ, &key) == ERROR_SUCCESS) {
      Collect(key, below, snapshot);
      RegCloseKey(key);
    }
  }
}

/// What stands in one of two snapshots only.
std::vector<std::pair<std::wstring, std::wstring>> Differences(const Snapshot& before,
                                                               const Snapshot& after) {
  std::vector<std::pair<std::wstring, std::wstring>> differences;
  std::ranges::set_symmetric_difference(before, after, std::back_inserter(differences));
  return differences;
}

std::wstring Braced(const Identity& identity) {
  const std::string text = identity.ToString();
  return L"{" + std::wstring(text.begin(), text.end()) + L"}";
}

/// The predefined keys of this process stand for private ones, with what every computer has below
/// them.
class Registration : public testing::Test {
 protected:
  struct Root {
    HKEY predefined;
    std::wstring name;
    HKEY key = nullptr;
  };

  void SetUp() override {
    // Loaded before the keys are exchanged, so that its start-up sees the real ones.
    ASSERT_TRUE(server_.Factory(ObjectModel().front()->ClassIdentity()));
    // A fresh name: what a test that was ended has left behind stands below another one.
    GUID fresh{};
    CoCreateGuid(&fresh);
    base_ = L"Software\\Veldmark2Tests\\" + std::to_wstring(fresh.Data1);
    for (Root* root : {&machine_, &user_}) {
      root->key = MakeKey(HKEY_CURRENT_USER, base_ + root->name);
      for (const wchar_t* name : {L"CLSID", L"Interface", L"TypeLib"}) {
        RegCloseKey(MakeKey(root->key, std::wstring(L"Software\\Classes\\") + name + L"\\other"));
      }
    }
    machine_classes_ = MakeKey(machine_.key, L"Software\\Classes");
    for (Root* root : {&machine_, &user_}) RegOverridePredefKey(root->predefined, root->key);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, machine_classes_);
  }
  void TearDown() override {
    for (HKEY key : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
      RegOverridePredefKey(key, nullptr);
    }
    for (const auto& [root, name] : denied_) Protect(*root, name, L"D:(A;;KA;;;WD)");
    RegCloseKey(machine_classes_);
    for (Root* root : {&machine_, &user_}) RegCloseKey(root->key);
    RegDeleteTreeW(HKEY_CURRENT_USER, base_.c_str());
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Veldmark2Tests");
  }

  static HKEY MakeKey(HKEY parent, const std::wstring& name) {
    HKEY key = nullptr;
    RegCreateKeyExW(parent, name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return key;
  }
  static Snapshot TakeSnapshot(const Root& root) {
    Snapshot snapshot;
    Collect(root.key, L"", snapshot);
    return snapshot;
  }
  static void Protect(const Root& root, const std::wstring& name, const wchar_t* rules) {
    HKEY key = nullptr;
    RegOpenKeyExW(root.key, name.c_str(), 0, WRITE_DAC, &key);
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(rules, SDDL_REVISION_1, &descriptor,
                                                         nullptr);
    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor);
    LocalFree(descriptor);
    RegCloseKey(key);
  }
  /// Nobody may write to this key any more.
  void Deny(const Root& root, const wchar_t* name) {
    Protect(root, name, L"D:(D;;KW;;;WD)(A;;KA;;;WD)");
    denied_.emplace_back(&root, name);
  }

  BuiltServer server_;
  std::wstring base_;
  Root machine_{HKEY_LOCAL_MACHINE, L"\\Machine"};
  Root user_{HKEY_CURRENT_USER, L"\\User"};
  HKEY machine_classes_ = nullptr;
  std::vector<std::pair<const Root*, std::wstring>> denied_;
};

TEST_F(Registration, WritesWhatThePlatformAsksForAndTakesAllOfItBack) {
  const Snapshot machine_before = TakeSnapshot(machine_);
  const Snapshot user_before = TakeSnapshot(user_);
  ASSERT_EQ(server_.Register(), S_OK);
  Snapshot registered = TakeSnapshot(machine_);
  EXPECT_THAT(Differences(user_before, TakeSnapshot(user_)), testing::IsEmpty());

  const std::wstring classes = L"Software\\Classes\\";
  for (const Interface* table : ObjectModel()) {
    const std::wstring name(table->name.begin(), table->name.end());
    const std::wstring class_identity = Braced(table->ClassIdentity());
    const std::wstring key = classes + L"CLSID\\" + class_identity + L"\\";
    EXPECT_EQ(registered[key + L"InprocServer32\\@"], server_.path);
    EXPECT_EQ(registered[key + L"InprocServer32\\@ThreadingModel"], L"Apartment");
    EXPECT_EQ(registered[key + L"TypeLib\\@"], Braced(LibraryIdentity()));
    EXPECT_EQ(registered[key + L"VersionIndependentProgID\\@"], L"Veldmark2." + name);
    const std::wstring versioned = registered[key + L"ProgID\\@"];
    EXPECT_EQ(registered[classes + versioned + L"\\CLSID\\@"], class_identity);
    EXPECT_EQ(registered[classes + L"Veldmark2." + name + L"\\CLSID\\@"], class_identity);
    EXPECT_EQ(registered[classes + L"Veldmark2." + name + L"\\CurVer\\@"], versioned);
  }

  // The platform's own way to register a type library finds everything done but its legacy.
  std::wstring path = server_.path;
  com::ComRef<ITypeLib> library;
  ASSERT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Receive()), S_OK);
  ASSERT_EQ(RegisterTypeLib(library.Get(), path.data(), nullptr), S_OK);
  using testing::HasSubstr;
  EXPECT_THAT(Differences(registered, TakeSnapshot(machine_)),
              testing::Each(testing::Key(testing::AnyOf(HasSubstr(L"\\ProxyStubClsid\\"),
                                                        HasSubstr(L"\\2.0\\FLAGS\\@")))));

  EXPECT_EQ(server_.Register(), S_OK) << "a second time";
  EXPECT_EQ(server_.Unregister(), S_OK);
  EXPECT_THAT(Differences(machine_before, TakeSnapshot(machine_)), testing::IsEmpty());
  EXPECT_EQ(server_.Unregister(), S_OK) << "with nothing left to do";
}

TEST_F(Registration, WhatAServerOfTheOtherWordSizeNeedsStays) {
  ASSERT_EQ(server_.Register(), S_OK);
  const std::wstring version =
      L"Software\\Classes\\TypeLib\\" + Braced(LibraryIdentity()) + L"\\2.0\\";
  const bool is_64_bit = sizeof(void*) == 8;
  const std::wstring own = version + (is_64_bit ? L"0\\win64" : L"0\\win32");
  const std::wstring other = version + (is_64_bit ? L"0\\win32" : L"0\\win64");
  RegCloseKey(MakeKey(machine_.key, other));
  EXPECT_EQ(server_.Unregister(), S_OK);
  const Snapshot left = TakeSnapshot(machine_);
  EXPECT_TRUE(left.contains(other + L"\\"));
  EXPECT_TRUE(left.contains(version + L"HELPDIR\\"));
  EXPECT_FALSE(left.contains(own + L"\\"));
}

TEST_F(Registration, WhereTheMachineIsDeniedTheUserGetsIt) {
  Deny(machine_, L"Software\\Classes\\Interface");
  const Snapshot machine_before = TakeSnapshot(machine_);
  const Snapshot user_before = TakeSnapshot(user_);
  ASSERT_EQ(server_.Register(), S_OK);
  EXPECT_THAT(Differences(machine_before, TakeSnapshot(machine_)), testing::IsEmpty());
  EXPECT_EQ(
      TakeSnapshot(user_)[L"Software\\Classes\\CLSID\\" +
                          Braced(ObjectModel().front()->ClassIdentity()) + L"\\InprocServer32\\@"],
      server_.path);
  EXPECT_EQ(server_.Unregister(), S_OK);
  EXPECT_THAT(Differences(user_before, TakeSnapshot(user_)), testing::IsEmpty());
}

TEST_F(Registration, AFailureLeavesEverythingAsItWas) {
  for (const Root* root : {&machine_, &user_}) {
    // An earlier registration, which the new one overwrites before it fails.
    const std::wstring former =
        L"Software\\Classes\\TypeLib\\" + Braced(LibraryIdentity()) + L"\\2.0\\HELPDIR";
    RegSetKeyValueW(root->key, former.c_str(), nullptr, REG_SZ, L"C:\\former", 20);
    Deny(*root, L"Software\\Classes\\CLSID");
  }
  const Snapshot machine_before = TakeSnapshot(machine_);
  const Snapshot user_before = TakeSnapshot(user_);
  EXPECT_EQ(server_.Register(), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  EXPECT_THAT(Differences(machine_before, TakeSnapshot(machine_)), testing::IsEmpty());
  EXPECT_THAT(Differences(user_before, TakeSnapshot(user_)), testing::IsEmpty());
}

}  // namespace
}  // namespace veldmark
