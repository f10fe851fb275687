#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "automation/LastError.h"
#include "automation/Text.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Platform.h"

namespace veldmark {

constexpr DWORD kProtectedList = kDaclSecurityInformation | kProtectedDaclSecurityInformation;

// Published behaviours that a world may be unable to show.
enum class Trait {
  ShortNames,           // 8.3 names are numbered
  DosWildcards,         // "*." and a "?" at the end of a name match as of old
  FileGuards,           // attributes can be set and cleared, and guard files with the access
  PathRules,            // characters, limits, long forms and files in a folder's place count
  ListedFoldersStay,    // a folder isn't removed while it is listed
  CreationTimes,        // a change leaves the time of creation alone
  PublishedTexts,       // the texts of the system and netmsg.dll are the published English ones
  Connections,          // a network provider shows networks and takes connections
  GlobalGroups,         // a computer has global groups and tells who is in them
  LocalGroupChanges,    // local groups are made and changed
  ClearedResults,       // a call of the network that fails leaves null in its block's place
  UserRights,           // the security authority knows who holds which right
  SocketStarts,         // the socket library counts its starts
  EmptyAccountNames,    // no account has an empty name, and no SID is one of another kind
  ServiceDependencies,  // a service needs those that it depends on
  ServiceChecks,        // names, accounts, controls and locks of services are checked
  EventRecords,         // event logs have records, and a log "Contract" those of 3 to 6
};

// A platform to hold against the operations' contracts, with room to work in.
class World {
 public:
  virtual ~World() = default;

  virtual Platform platform() = 0;

  // An empty folder on a local drive, as a full plain path without a trailing "\" and at most 60
  // characters long. The world removes it with whatever is in it.
  virtual const std::u16string& scratch() const = 0;

  // The path of an empty key below kHkeyCurrentUser, removed with whatever is in it.
  virtual const std::u16string& scratch_key() const = 0;

  // The name of the user that the program runs as, who has an account of this computer and
  // administers it.
  virtual const std::u16string& user() const = 0;

  // The path of the file whose texts stand in EventTexts.mc.
  virtual std::u16string event_texts() const = 0;
  // The path of a program that runs as the service that its first argument names, and only knows to
  // start and to stop.
  virtual std::u16string service_program() const = 0;

  // Lets time pass, by waiting or by moving the clock, without a turn of the message loop.
  virtual void LetPass(unsigned milliseconds) = 0;

  // A token for impersonation, opened for query, of a member of Everyone. Closed with CloseHandle.
  virtual HANDLE OpenImpersonationToken() = 0;

  // Makes a printer of this computer, with the name, comment, location, priority and times of this
  // record. The world removes it.
  virtual void AddPrinter(const PRINTER_INFO_2W& record) = 0;

  // Null if the world shows this behaviour, else the reason why not.
  virtual const char* WhyNot(Trait trait) const = 0;
};

// The world of this program: each source that has one defines it, and a program links one of them.
std::unique_ptr<World> MakeWorld();

// A contract test runs in a world of its own.
class Contract : public testing::Test {
 protected:
  Contract()
      : world_(MakeWorld()),
        platform_(world_->platform()),
        files_(platform_.files),
        registry_(platform_.registry) {}

  // The scratch folder's path, followed by `rest`.
  std::u16string In(std::u16string_view rest) const {
    return world_->scratch() + std::u16string(rest);
  }

  // Makes a file, or replaces it.
  void Touch(std::u16string_view name, std::string_view content = {}) {
    const HANDLE file = files_.CreateFileW(In(name).c_str(), kGenericWrite, 0, nullptr,
                                           kCreateAlways, kFileAttributeNormal, nullptr);
    ASSERT_NE(file, kInvalidHandleValue);
    DWORD written = 0;
    EXPECT_TRUE(files_.WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written,
                                 nullptr));
    files_.CloseHandle(file);
  }

  Text OwnName() {
    WCHAR name[32];
    DWORD size = 32;
    EXPECT_TRUE(platform_.system.GetComputerNameW(name, &size));
    return {name, size};
  }

  // The descriptor of a string; false, and the thread's error, where it is none.
  BOOL Convert(LPCWSTR string, LocalMemory<std::uint8_t>& descriptor, DWORD* size = nullptr) {
    void* block = nullptr;
    const BOOL result = platform_.security.ConvertStringSecurityDescriptorToSecurityDescriptorW(
        string, kSddlRevision1, &block, size);
    if (result != 0) descriptor.Reset(static_cast<std::uint8_t*>(block));
    return result;
  }

  // Stores the list of a string descriptor as that of a named object.
  DWORD SetList(const Text& name, DWORD type, LPCWSTR string, DWORD information) {
    LocalMemory<std::uint8_t> made(platform_.system);
    EXPECT_TRUE(Convert(string, made));
    DWORD list = 0;
    std::memcpy(&list, made.Get() + 16, sizeof list);
    return platform_.security.SetNamedSecurityInfoW(
        name.c_str(), type, information, nullptr, nullptr, list == 0 ? nullptr : made.Get() + list,
        nullptr);
  }

  static std::int64_t Ticks(const FILETIME& time) {
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
  }

  // What a call failed with; 0 where it succeeded.
  template <class Result>
  static DWORD Code(const Result& result) {
    return static_cast<bool>(result) ? 0 : LastPlatformError();
  }

  // Null if the behaviour is shown, else the reason to skip.
  const char* WhyNot(Trait trait) const { return world_->WhyNot(trait); }

  std::unique_ptr<World> world_;
  Platform platform_;
  FileSystem& files_;
  Registry& registry_;
};

}  // namespace veldmark
