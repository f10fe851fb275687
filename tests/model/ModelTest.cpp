#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "apartment/CStatus.h"
#include "apartment/CTimer.h"
#include "model/IdlWriter.h"
#include "model/ManifestWriter.h"
#include "model/ReferenceWriter.h"
#include "root/CMyComputer.h"
#include "root/ObjectModel.h"
#include "root/SystemRoot.h"

namespace veldmark {
namespace {

TEST(Model, TheFilesInTheCheckoutSayWhatTheTablesSay) {
  const std::pair<const char*, std::string> files[] = {
      {"model/Veldmark2.idl", IdlText()},
      {"docs/reference.md", ReferenceText()},
      {"examples/unregistered/Veldmark2.manifest", ManifestText()},
  };
  for (const auto& [name, text] : files) {
    std::ifstream file(VELDMARK_SOURCE_DIR + std::string("/") + name, std::ios::binary);
    const std::string found{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(found == text) << name << " is out of date; renew it by: ninja -C "
                               << VELDMARK_BINARY_DIR << " renew_model";
  }
}

TEST(Model, NoTwoTypesShareAnIdentifierOrAName) {
  std::set<Identity> identities{LibraryIdentity()};
  std::set<Text> names;
  const auto add = [&](const Identity& identity, const Text& name) {
    EXPECT_TRUE(identities.insert(identity).second) << ToUtf8(name);
    EXPECT_TRUE(names.insert(LowerAscii(name)).second) << ToUtf8(name);
  };
  for (const Interface* table : ObjectModel()) {
    add(table->ClassIdentity(), table->name);
    add(table->InterfaceIdentity(), table->InterfaceName());
    EXPECT_EQ(FindClass(table->ClassIdentity()), table);
  }
  for (const EventInterface* table : EventInterfaces())
    add(table->InterfaceIdentity(), table->name);
  for (const Enumeration* table : Enumerations()) {
    add(table->EnumerationIdentity(), table->name);
    for (const Enumeration::Value& value : table->values) {
      EXPECT_TRUE(names.insert(LowerAscii(value.name)).second) << ToUtf8(value.name);
    }
  }
  EXPECT_EQ(FindClass(LibraryIdentity()), nullptr);
}

/// A table's slots in their order, optional arguments in brackets.
std::string SlotsOf(const Interface& table) {
  std::string slots;
  for (const Member& member : table.members) {
    std::string arguments;
    for (const Parameter& parameter : member.parameters) {
      const std::string name = ToUtf8(parameter.name);
      arguments +=
          (arguments.empty() ? "" : ",") + (parameter.default_value ? "[" + name + "]" : name);
    }
    slots += ToUtf8(member.name) + (member.kind == MemberKind::kPut ? "=" : "") +
             (arguments.empty() ? "" : "(" + arguments + ")") + " ";
  }
  return slots;
}

TEST(Model, SlotsAndArgumentsOfTheFrameAreThoseThatClientsWereBuiltFor) {
  EXPECT_EQ(SlotsOf(CMyComputer::Describe()), "GetDrives ");
  EXPECT_EQ(SlotsOf(CStatus::Describe()), "GetDebugInfo(DebugType) ");
  EXPECT_EQ(SlotsOf(CTimer::Describe()), "Enabled Enabled=(Value) Interval Interval=(Value) ");
  EXPECT_EQ(SlotsOf(SystemRoot::Describe()),
            "LocalComputerName LocalUserName GetMyComputer GetNetHood GetWellKnownGroups "
            "GetDomainFromServerName(ServerName) GetFolder(Path) FolderExists(Path) GetFile(Path) "
            "FileExists(Path) GetStatusObject ConvertUTCtoLocal(dtUTC) ReadTextFile(szFileName) "
            "WriteTextFile(szFileName,szFileContents,[bWriteAsUnicode]) "
            "SetPrivilege(SystemName,PrivilegeName,[bEnable]) ClearSidCache GetRegistry "
            "GetServer(ServerName,[DomainName]) GetUser(AccountDomain,UserName) "
            "GetGroup(AccountDomain,GroupName) CopyFile(ExistingFile,NewFile,bOverwrite) "
            "AddNetworkConnection(LocalName,RemoteName,UserName,Password,ResourceType,hWndOwner,"
            "[bMakePersistent]) CancelNetworkConnection(RemoteName,[bMakePersistent],[bForce]) "
            "GetDomain(DomainName) GetNamedSD(ObjectName,ObjectType,[SidLookupServer]) "
            "SetNamedSD(oSecurityDescriptor) LookupSidText(ServerName,DomainName,AccountName) "
            "CreateSD(pSD) CreateSDFromStringSD(StringSD,[SidLookupServer]) "
            "CreateSDFromStringSD_API(StringSD,[SidLookupServer]) "
            "CreateSDFromStringSD2(StringSD,[SidLookupServer],[ForestRootDC]) "
            "ReadTextFileAPI(szFileName) ReadBinaryFileAPI(szFileName) "
            "WriteBinaryFileAPI(szFileName,aData) GetSidObjectFromSid(objectSID,[ResidesOnServer]) "
            "GetSidFromText(SidText) CreateFolder(FullPath) GetSidFromText2(SidText,ServerName) ");
}

}  // namespace
}  // namespace veldmark
