#include <array>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "support/SecurityText.h"

namespace veldmark {
namespace {

constexpr DWORD kFile = 1;
constexpr DWORD kService = 2;
constexpr DWORD kPrinter = 3;
constexpr DWORD kKey = 4;
constexpr DWORD kShare = 5;
constexpr DWORD kOwnerAndList = kOwnerSecurityInformation | kDaclSecurityInformation;
constexpr DWORD kUnprotectedList = kDaclSecurityInformation | kUnprotectedDaclSecurityInformation;

class SecurityContract : public Contract {
 protected:
  SecurityContract() : security_(platform_.security) { Touch(u"\\a.txt"); }

  // The rendered descriptor of a named object, or "!" and the code.
  std::string Get(TextView name, DWORD type, DWORD information = kDaclSecurityInformation) {
    LocalMemory<void> descriptor(platform_.system);
    const DWORD code =
        security_.GetNamedSecurityInfoW(Text(name).c_str(), type, information, nullptr, nullptr,
                                        nullptr, nullptr, descriptor.Receive());
    if (code != 0) return "!" + std::to_string(code);
    return SecurityText::OfDescriptor(descriptor.Get());
  }

  FileHandle ProcessToken(DWORD access) {
    HANDLE token = nullptr;
    EXPECT_TRUE(security_.OpenProcessToken(security_.GetCurrentProcess(), access, &token));
    return FileHandle(files_, token);
  }

  Text Key(TextView rest = {}) const {
    return u"CURRENT_USER\\" + world_->scratch_key() + Text(rest);
  }

  Security& security_;
};

TEST_F(SecurityContract, ReadsWholeDescriptorsIntoBuffersThatAreLargeEnough) {
  std::array<std::uint8_t, 1024> buffer;
  for (const Text& path : {In(u"\\a.txt"), world_->scratch()}) {
    const FileHandle handle(
        files_, files_.CreateFileW(path.c_str(), kReadControl, kFileShareRead | kFileShareDelete,
                                   nullptr, kOpenExisting, kFileFlagBackupSemantics, nullptr));
    ASSERT_TRUE(handle) << ToUtf8(path);
    for (const bool by_handle : {false, true}) {
      const auto read = [&](DWORD information, DWORD room, DWORD& needed) {
        return by_handle ? security_.GetKernelObjectSecurity(handle.Get(), information,
                                                             buffer.data(), room, &needed)
                         : security_.GetFileSecurityW(path.c_str(), information, buffer.data(),
                                                      room, &needed);
      };
      DWORD needed = 0;
      DWORD same = 0;
      EXPECT_EQ(Code(read(kOwnerAndList, 0, needed)), kErrorInsufficientBuffer);
      ASSERT_GT(needed, 20u);
      buffer.fill(0xEE);
      EXPECT_EQ(Code(read(kOwnerAndList, needed - 1, same)), kErrorInsufficientBuffer);
      EXPECT_EQ(same, needed);
      EXPECT_EQ(buffer[0], 0xEE);
      ASSERT_TRUE(read(kOwnerAndList, needed, same));
      EXPECT_EQ(security_.GetSecurityDescriptorLength(buffer.data()), needed);
      const std::string text = SecurityText::OfDescriptor(buffer.data());
      EXPECT_TRUE(text.starts_with("O:S-") || text.starts_with("O:BA")) << text;
      EXPECT_EQ(text, Get(path, kFile, kOwnerAndList));
      ASSERT_TRUE(read(kDaclSecurityInformation, needed, same));
      EXPECT_LT(same, needed);
      EXPECT_TRUE(SecurityText::OfDescriptor(buffer.data()).starts_with("D:"));
    }
  }
  const FileHandle data_only(
      files_, files_.CreateFileW(In(u"\\a.txt").c_str(), kFileReadData, kFileShareRead, nullptr,
                                 kOpenExisting, 0, nullptr));
  const auto read = [&](HANDLE handle) {
    DWORD needed = 0;
    return Code(
        security_.GetKernelObjectSecurity(handle, kOwnerAndList, buffer.data(), 1024, &needed));
  };
  EXPECT_EQ(read(data_only.Get()), kErrorAccessDenied) << "opened without the right to read it";
  EXPECT_EQ(read(nullptr), kErrorInvalidHandle);
}

TEST_F(SecurityContract, ReadsAndStoresTheListOfADrivesRoot) {
  const Text root = world_->scratch().substr(0, 3);
  DWORD needed = 0;
  std::vector<std::uint8_t> buffer(1024);
  EXPECT_TRUE(security_.GetFileSecurityW((u"\\\\?\\" + root).c_str(), kOwnerAndList, buffer.data(),
                                         1024, &needed));
  const std::string before = Get(root, kFile, kOwnerAndList);
  EXPECT_EQ(SecurityText::OfDescriptor(buffer.data()), before);
  DWORD list = 0;
  std::memcpy(&list, buffer.data() + 16, sizeof list);
  EXPECT_EQ(security_.SetNamedSecurityInfoW(root.c_str(), kFile, kUnprotectedList, nullptr, nullptr,
                                            buffer.data() + list, nullptr),
            0u);
  const auto entries = [](const std::string& text) { return text.substr(text.find('(')); };
  EXPECT_EQ(entries(Get(root, kFile)), entries(before));
}

TEST_F(SecurityContract, TellsWhatIsMissingByThePublishedCodes) {
  const Text other = u"\\\\vk-missing\\";
  const std::tuple<DWORD, Text, DWORD> table[] = {
      {kFile, In(u"\\none"), kErrorFileNotFound},
      {kFile, In(u"\\none\\x"), kErrorPathNotFound},
      {kFile, other + u"share\\x", kErrorBadNetPath},
      {kKey, Key(u"\\None"), kErrorFileNotFound},
      {kKey, u"NO_ROOT\\x", kErrorInvalidParameter},
      {kKey, other + u"MACHINE\\SOFTWARE", kErrorRpcServerUnavailable},
      {kService, u"No such service", kErrorServiceDoesNotExist},
      {kService, other + u"Eventlog", kErrorRpcServerUnavailable},
      {kPrinter, u"No such printer", kErrorInvalidPrinterName},
      {kPrinter, u"\\\\\\No server", kErrorInvalidPrinterName},
      {kShare, u"No such share", kErrorNetNameNotFound},
      {kShare, other + u"share", kErrorRpcServerUnavailable},
      {0, u"anything", kErrorInvalidParameter}};
  for (const auto& [type, name, code] : table) {
    EXPECT_EQ(Get(name, type), "!" + std::to_string(code)) << type << " " << ToUtf8(name);
    EXPECT_EQ(SetList(name, type, u"D:(A;;GA;;;WD)", kProtectedList), code) << ToUtf8(name);
    if (type != kFile) continue;
    DWORD needed = 0;
    EXPECT_EQ(Code(security_.GetFileSecurityW(name.c_str(), kOwnerAndList, nullptr, 0, &needed)),
              code);
  }
  EXPECT_EQ(security_.GetNamedSecurityInfoW(Key().c_str(), kKey, kOwnerAndList, nullptr, nullptr,
                                            nullptr, nullptr, nullptr),
            kErrorInvalidParameter);
}

TEST_F(SecurityContract, StoresAListAndHandsOutItsPartsWithinOneBlock) {
  ASSERT_EQ(SetList(Key(), kKey, u"D:(D;;0x20;;;BG)(A;CI;KA;;;WD)", kProtectedList), 0u);
  LocalMemory<void> descriptor(platform_.system);
  void* owner = nullptr;
  void* group = &owner;
  void* list = nullptr;
  void* system_list = &owner;
  ASSERT_EQ(security_.GetNamedSecurityInfoW(Key().c_str(), kKey, kOwnerAndList, &owner, &group,
                                            &list, &system_list, descriptor.Receive()),
            0u);
  EXPECT_EQ(SecurityText::OfList(static_cast<std::uint8_t*>(list)), "(1;00;20;BG)(0;02;f003f;WD)");
  const auto* const start = static_cast<std::uint8_t*>(descriptor.Get());
  const std::uint8_t* const end = start + security_.GetSecurityDescriptorLength(start);
  for (const void* part : {owner, list}) EXPECT_TRUE(part > start && part < end);
  EXPECT_EQ(group, nullptr);
  EXPECT_EQ(system_list, nullptr);

  constexpr std::uint8_t kShortList[] = {2, 0, 9, 0, 3, 0, 0, 0, 0};
  constexpr std::uint8_t kBadSid[] = {7, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0};
  EXPECT_EQ(security_.SetNamedSecurityInfoW(Key().c_str(), kKey, kProtectedList, nullptr, nullptr,
                                            kShortList, nullptr),
            kErrorInvalidAcl);
  EXPECT_EQ(security_.SetNamedSecurityInfoW(Key().c_str(), kKey, kOwnerSecurityInformation, kBadSid,
                                            nullptr, nullptr, nullptr),
            kErrorInvalidSid);
}

TEST_F(SecurityContract, BuildsDescriptorsOfStrings) {
  const std::pair<LPCWSTR, std::string> table[] = {
      {u"", "D:none"},
      {u"D:", "D:"},
      {u"D:PAI", "D:PAI"},
      {u"O:BAG:SYD:(A;OICI;FA;;;BA)(D;;GR;;;S-1-1-0)", "O:BA D:(0;03;1f01ff;BA)(1;00;80000000;WD)"},
      {u"D:AI(A;CIIOID;0x1200a9;;;CO)", "D:AI(0;1a;1200a9;CO)"},
      {u"D:(A;;CCDCLCSWRPWPDTLOCRSDRCWDWO;;;AU)", "D:(0;00;f01ff;AU)"},
      {u"D:(A;;KRSD;;;BU)(A;;FRFW;;;BU)(A;;17;;;BU)",
       "D:(0;00;30019;BU)(0;00;12019f;BU)(0;00;11;BU)"},
      {u"O:S-1-5-21-1-2-3-4 G:SY", "O:S-1-5-21-1-2-3-4 D:none"},
      {u"nonsense", "!87"},
      {u"X:BA", "!87"},
      {u"O:ZZ", "!1337"},
      {u"D:(A;;FA;;;ZZ)", "!1336"},
      {u"D:(A;;FA;;BA)", "!1336"},
      {u"D:(A;;FA;;;BA", "!1336"},
      {u"D:(A;XX;FA;;;BA)", "!1336"},
      {u"D:(A;;QQ;;;BA)", "!1336"},
      {u"D:(Q;;FA;;;BA)", "!1336"}};
  for (const auto& [string, text] : table) {
    LocalMemory<std::uint8_t> descriptor(platform_.system);
    DWORD size = 0;
    const bool good = Convert(string, descriptor, &size) != 0;
    EXPECT_EQ(good ? SecurityText::OfDescriptor(descriptor.Get())
                   : "!" + std::to_string(LastPlatformError()),
              text)
        << ToUtf8(string);
    EXPECT_EQ(good ? security_.GetSecurityDescriptorLength(descriptor.Get()) : 0, size);
  }
  void* block = nullptr;
  EXPECT_EQ(Code(security_.ConvertStringSecurityDescriptorToSecurityDescriptorW(u"D:", 2, &block,
                                                                                nullptr)),
            kErrorUnknownRevision);
}

TEST_F(SecurityContract, SwitchesThePrivilegesThatTheTokenHas) {
  LUID luid{77, 77};
  EXPECT_EQ(Code(security_.LookupPrivilegeValueW(nullptr, u"SeNoSuchPrivilege", &luid)),
            kErrorNoSuchPrivilege);
  EXPECT_EQ(Code(security_.LookupPrivilegeValueW(u"\\\\vk-missing", u"SeBackupPrivilege", &luid)),
            kErrorRpcServerUnavailable);
  EXPECT_EQ(luid.LowPart, 77u);
  EXPECT_TRUE(security_.LookupPrivilegeValueW(u"", u"sechangenotifyprivilege", &luid));

  constexpr DWORD kRoom = sizeof(TOKEN_PRIVILEGES);
  const FileHandle token = ProcessToken(kTokenAdjustPrivileges | kTokenQuery);
  const std::tuple<LUID, DWORD, DWORD, BOOL, DWORD, DWORD, DWORD> rows[] = {
      {luid, 0, kRoom - 1, 0, kErrorInsufficientBuffer, 0, 0},
      {luid, 0, kRoom, 1, 0, 1, kSePrivilegeEnabled},
      {luid, kSePrivilegeEnabled, kRoom, 1, 0, 1, 0},
      {{0, 0}, kSePrivilegeEnabled, kRoom, 1, kErrorNotAllAssigned, 0, 0}};
  for (const auto& [own, attributes, room, result, error, count, state] : rows) {
    const TOKEN_PRIVILEGES wanted{1, {{own, attributes}}};
    TOKEN_PRIVILEGES before{};
    DWORD size = 0;
    EXPECT_EQ(security_.AdjustTokenPrivileges(token.Get(), 0, &wanted, room, &before, &size),
              result);
    EXPECT_EQ(LastPlatformError(), error);
    EXPECT_EQ(before.PrivilegeCount, count);
    EXPECT_EQ(before.Privileges[0].Attributes & kSePrivilegeEnabled, state);
  }
  const TOKEN_PRIVILEGES wanted{1, {{luid, kSePrivilegeEnabled}}};
  const FileHandle query = ProcessToken(kTokenQuery);
  for (const auto& [asked, error] :
       {std::pair(query.Get(), kErrorAccessDenied), {nullptr, kErrorInvalidHandle}}) {
    EXPECT_EQ(Code(security_.AdjustTokenPrivileges(asked, 0, &wanted, 0, nullptr, nullptr)), error);
  }
  HANDLE none = nullptr;
  EXPECT_EQ(Code(security_.OpenProcessToken(nullptr, kTokenQuery, &none)), kErrorInvalidHandle);
}

TEST_F(SecurityContract, ChecksAClientsAccessAgainstADescriptor) {
  const FileHandle client(files_, world_->OpenImpersonationToken());
  const FileHandle process = ProcessToken(kTokenQuery);
  struct Row {
    LPCWSTR descriptor;
    HANDLE token;
    DWORD desired;
    DWORD error;  // of the call, or 0 where the test could be made
    bool allowed;
  };
  const Row table[] = {
      {u"O:BGG:BAD:(A;;0x3;;;WD)", client.Get(), 1, 0, true},
      {u"O:BGG:BAD:(A;;0x3;;;WD)", client.Get(), 4, 0, false},
      {u"O:BGG:BAD:(A;;0x1;;;AN)", client.Get(), 1, 0, false},
      {u"O:BGG:BAD:(D;;0x1;;;WD)(A;;0x3;;;WD)", client.Get(), 1, 0, false},
      {u"O:BGG:BAD:(D;;0x1;;;WD)(A;;0x3;;;WD)", client.Get(), 2, 0, true},
      {u"O:BGG:BAD:(A;;0x3;;;WD)(D;;0x1;;;WD)", client.Get(), 1, 0, true},
      {u"O:BGG:BAD:(A;CIIO;0x3;;;WD)", client.Get(), 1, 0, false},
      {u"O:BGG:BAD:(A;;0x3;;;WD)", client.Get(), 0, 0, false},
      {u"O:BGG:BAD:(A;;GR;;;WD)", client.Get(), 0x20094, 0, true},
      {u"O:BGG:BAD:", client.Get(), 0x20000, 0, false},
      {u"O:WDG:BAD:", client.Get(), 0x60000, 0, true},
      {u"O:WDG:BAD:", client.Get(), 1, 0, false},
      {u"O:BGG:BAD:(A;;0x3;;;WD)", process.Get(), 1, kErrorNoImpersonationToken, false},
      {u"O:BGG:BAD:(A;;0x3;;;WD)", nullptr, 1, kErrorInvalidHandle, false},
      {u"O:BGG:BAD:(A;;0x3;;;WD)", client.Get(), kGenericRead, kErrorGenericNotMapped, false},
      {u"D:(A;;0x3;;;WD)", client.Get(), 1, kErrorInvalidSecurityDescriptor, false}};
  GENERIC_MAPPING mapping{0x20094, 0x20028, 0x20004, 0xF01FF};
  for (const Row& row : table) {
    SCOPED_TRACE(ToUtf8(row.descriptor) + " " + std::to_string(row.desired));
    LocalMemory<std::uint8_t> descriptor(platform_.system);
    ASSERT_TRUE(Convert(row.descriptor, descriptor));
    alignas(8) std::uint8_t privileges[64];
    DWORD room = 0;
    DWORD granted = 77;
    BOOL status = 77;
    const auto check = [&](void* place) {
      return Code(security_.AccessCheckByType(descriptor.Get(), nullptr, row.token, row.desired,
                                              nullptr, 0, &mapping, place, &room, &granted,
                                              &status));
    };
    if (row.error == 0) {
      EXPECT_EQ(check(nullptr), kErrorInsufficientBuffer);
      EXPECT_GE(room, 20u);
    }
    room = sizeof privileges;
    EXPECT_EQ(check(privileges), row.error);
    if (row.error != 0) continue;
    EXPECT_EQ(status != 0, row.allowed);
    EXPECT_EQ(granted, row.allowed ? row.desired : 0u);
  }
}

}  // namespace
}  // namespace veldmark
