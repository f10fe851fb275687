#include "root/SystemRoot.h"

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "collections/Collection.h"
#include "network/CDomain.h"
#include "network/CNetHood.h"
#include "network/CServer.h"
#include "registry/CRegistry.h"
#include "root/CMyComputer.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "storage/CFile.h"
#include "storage/CFolder.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"SystemRoot";
constexpr TextView kNetworkStart = u"\\\\";
constexpr std::int32_t kObsoleteFunction = kAutomationErrorBase + 911;

/// Where to look for an account: on a computer, "\\SRV", or in a domain, asked of its controller.
struct AccountPlace {
  explicit AccountPlace(const Text& account_domain)
      : is_domain(!account_domain.starts_with(kNetworkStart)) {
    if (is_domain) domain_name = account_domain;
    server_name = is_domain ? Engine().GetPDCName(account_domain, Text()) : account_domain;
    if (server_name.starts_with(kNetworkStart)) server_name.erase(0, kNetworkStart.size());
  }
  bool is_domain;
  Text domain_name;
  Text server_name;
};

/// The class that stands for a kind of named object; empty for a kind that has none.
TextView ParentTypeOf(SE_OBJECT_TYPE object_type) {
  switch (object_type) {
    case SE_FILE_OBJECT:
      return u"CFile";
    case SE_SERVICE:
      return u"CService";
    case SE_PRINTER:
      return u"CPrinter";
    case SE_REGISTRY_KEY:
      return u"CRegKey";
    case SE_LMSHARE:
      return u"CShare";
    case SE_DS_OBJECT:
    case SE_DS_OBJECT_ALL:
      return u"LDAP";
    default:
      return {};
  }
}

/// What an empty descriptor string describes: a list without entries, and no owner.
Ref<CSecurityDescriptor> EmptyDescriptor() {
  auto descriptor = Make<CSecurityDescriptor>();
  const auto acl = Make<CAcl>();
  acl->SetAces(Make<CAces>());
  descriptor->SetDACL(acl);
  return descriptor;
}

}  // namespace

const Interface& SystemRoot::Describe() {
  static const Interface table =
      Declare<SystemRoot>(u"SystemRoot", u"The root of the object model.")
          .Get<&SystemRoot::LocalComputerName>(u"LocalComputerName", u"The name of this computer.")
          .Get<&SystemRoot::LocalUserName>(u"LocalUserName", u"The name of the user who runs this.")
          .Method<&SystemRoot::GetMyComputer>(u"GetMyComputer", u"The local computer.")
          .Method<&SystemRoot::GetNetHood>(u"GetNetHood", u"The network neighbourhood.")
          .Method<&SystemRoot::GetWellKnownGroups>(u"GetWellKnownGroups", u"The well-known groups.")
          .Method<&SystemRoot::GetDomainFromServerName>(
              u"GetDomainFromServerName", u"The domain that a server belongs to.", {u"ServerName"})
          .Method<&SystemRoot::GetFolder>(
              u"GetFolder", u"The folder at a path, or the root of a drive or share.", {u"Path"})
          .Remark(
              u"Raises the platform's error, 2 or 3 for a missing folder. A root isn't looked "
              u"up: it succeeds for a drive or share that doesn't exist, too.")
          .Method<&SystemRoot::FolderExists>(u"FolderExists",
                                             u"True if something of this name exists.", {u"Path"})
          .Remark(u"True for a file too.")
          .Method<&SystemRoot::GetFile>(u"GetFile", u"The file at a path.", {u"Path"})
          .Remark(
              u"Raises the platform's error, 2 or 3 for a missing file. A folder's path gives "
              u"the folder as a file.")
          .Method<&SystemRoot::FileExists>(
              u"FileExists", u"True if a file or folder matches; wildcards work.", {u"Path"})
          .Method<&SystemRoot::GetStatusObject>(u"GetStatusObject",
                                                u"Progress and cancellation of walks.")
          .Method<&SystemRoot::ConvertUTCtoLocal>(
              u"ConvertUTCtoLocal", u"Universal time as local time, by the bias in force now.",
              {u"dtUTC"})
          .Remark(u"Date 0, not the argument, in a zone without daylight saving time.")
          .Method<&SystemRoot::ReadTextFile>(u"ReadTextFile", u"The text of a file.",
                                             {u"szFileName"})
          .Remark(
              u"Makes a file that is missing, and returns an empty text. It opens the "
              u"file for writing too, and raises the runtime's errors: 75 for a read-only "
              u"file, 70 for one in use, 76 for a missing folder.")
          .Method<&SystemRoot::WriteTextFile>(
              u"WriteTextFile", u"Writes a text to a file.",
              {u"szFileName", u"szFileContents", {u"bWriteAsUnicode", false}})
          .Remark(
              u"Writes over the beginning of a file that exists and doesn't cut it off: a "
              u"longer file keeps its tail. Unless it is written as Unicode, characters that "
              u"the system's code page lacks become \"?\". Raises as ReadTextFile does.")
          .Method<&SystemRoot::SetPrivilege>(u"SetPrivilege",
                                             u"Turns a privilege of this process on or off.",
                                             {u"SystemName", u"PrivilegeName", {u"bEnable", true}})
          .Remark(
              u"True also where the process doesn't have the privilege or there is none of the "
              u"name: nothing is changed then.")
          .Method<&SystemRoot::ClearSidCache>(u"ClearSidCache",
                                              u"Forgets the accounts that were looked up by SID.")
          .Method<&SystemRoot::GetRegistry>(u"GetRegistry", u"The registry.")
          .Method<&SystemRoot::GetServer>(u"GetServer", u"A server by its name.",
                                          {u"ServerName", {u"DomainName", u""}})
          .Method<&SystemRoot::GetUser>(u"GetUser", u"A user account.",
                                        {u"AccountDomain", u"UserName"})
          .Method<&SystemRoot::GetGroup>(u"GetGroup", u"A group account.",
                                         {u"AccountDomain", u"GroupName"})
          .Method<&SystemRoot::CopyFile>(u"CopyFile", u"Copies a file.",
                                         {u"ExistingFile", u"NewFile", u"bOverwrite"})
          .Remark(
              u"Makes the target's folder where that alone is missing. Raises the platform's "
              u"error, 80 for a target that exists and may not be overwritten.")
          .Method<&SystemRoot::AddNetworkConnection>(u"AddNetworkConnection",
                                                     u"Connects a network resource.",
                                                     {u"LocalName",
                                                      u"RemoteName",
                                                      u"UserName",
                                                      u"Password",
                                                      u"ResourceType",
                                                      u"hWndOwner",
                                                      {u"bMakePersistent", false}})
          .Remark(
              u"An empty password is an empty password, not that of the current user. Raises "
              u"the platform's error; 1208 stands for one of the network's own.")
          .Method<&SystemRoot::CancelNetworkConnection>(
              u"CancelNetworkConnection", u"Ends the connection to a network resource.",
              {u"RemoteName", {u"bMakePersistent", false}, {u"bForce", false}})
          .Method<&SystemRoot::GetDomain>(u"GetDomain", u"A domain by its name.", {u"DomainName"})
          .Method<&SystemRoot::GetNamedSD>(
              u"GetNamedSD", u"The security descriptor of a named object.",
              {u"ObjectName", u"ObjectType", {u"SidLookupServer", u""}})
          .Method<&SystemRoot::SetNamedSD>(u"SetNamedSD",
                                           u"Writes a security descriptor back to its object.",
                                           {u"oSecurityDescriptor"})
          .Remark(
              u"As CSecurityDescriptor.Save: the owner isn't written, and entries of some "
              u"kinds are left out.")
          .Method<&SystemRoot::LookupSidText>(u"LookupSidText", u"The SID of an account as text.",
                                              {u"ServerName", u"DomainName", u"AccountName"})
          .Method<&SystemRoot::CreateSD>(u"CreateSD", u"Obsolete: always raises an error.",
                                         {u"pSD"})
          .Remark(u"The error is -2147220593 (0x8004038F).")
          .Method<&SystemRoot::CreateSDFromStringSD>(
              u"CreateSDFromStringSD", u"The security descriptor that a string describes.",
              {u"StringSD", {u"SidLookupServer", u""}})
          .Method<&SystemRoot::CreateSDFromStringSD_API>(
              u"CreateSDFromStringSD_API", u"The same through the platform's own parser.",
              {u"StringSD", {u"SidLookupServer", u""}})
          .Method<&SystemRoot::CreateSDFromStringSD2>(
              u"CreateSDFromStringSD2", u"The same with a controller of the forest's root domain.",
              {u"StringSD", {u"SidLookupServer", u""}, {u"ForestRootDC", u""}})
          .Method<&SystemRoot::ReadTextFileAPI>(
              u"ReadTextFileAPI", u"The text of a file, on long paths too.", {u"szFileName"})
          .Remark(
              u"A file of at most 7 bytes is read as UTF-16, whatever it holds: \"abcdef\" in "
              u"single bytes comes back as three other characters. Raises the platform's "
              u"error, 2 for a missing file, 9 for an empty one, and 9, 7 or 6 for one of "
              u"2 GiB or more.")
          .Method<&SystemRoot::ReadBinaryFileAPI>(u"ReadBinaryFileAPI", u"The bytes of a file.",
                                                  {u"szFileName"})
          .Remark(
              u"Raises the platform's error, 2 for a missing file, 9 for an empty one, and 9, "
              u"7 or 6 for one of 2 GiB or more.")
          .Method<&SystemRoot::WriteBinaryFileAPI>(
              u"WriteBinaryFileAPI", u"Writes bytes to a file.", {u"szFileName", u"aData"})
          .Remark(
              u"For new files only: one that exists is emptied, and 183 is raised. Without "
              u"elements it leaves an empty file behind and raises 9.")
          .Method<&SystemRoot::GetSidObjectFromSid>(u"GetSidObjectFromSid",
                                                    u"A SID object from a binary SID.",
                                                    {u"objectSID", {u"ResidesOnServer", u""}})
          .Method<&SystemRoot::GetSidFromText>(u"GetSidFromText", u"A SID object from its text.",
                                               {u"SidText"})
          .Remark(
              u"Authorities other than 0, 1, 2, 3 and 5 are taken as 0: \"S-1-16-4096\" gives "
              u"S-1-0-4096. Raises 87 without a number behind the authority, 6 for one beyond "
              u"32 bits, 13 for what is no number and 9 for more than eight behind it.")
          .Method<&SystemRoot::CreateFolder>(
              u"CreateFolder", u"Makes a folder; its parent must exist.", {u"FullPath"})
          .Remark(
              u"Raises the platform's error, 183 for a folder that exists and 3 without a "
              u"parent. CFolder.CreateSubFolder returns False instead.")
          .Method<&SystemRoot::GetSidFromText2>(
              u"GetSidFromText2", u"A SID object from its text, with the server to ask about it.",
              {u"SidText", u"ServerName"});
  return table;
}

Text SystemRoot::LocalComputerName() { return Engine().ComputerName(); }

Text SystemRoot::LocalUserName() { return Engine().UserName(); }

Ref<CMyComputer> SystemRoot::GetMyComputer() {
  return ReRaisingAs(kClassName, [] { return Make<CMyComputer>(); });
}

Ref<CNetHood> SystemRoot::GetNetHood() {
  return ReRaisingAs(kClassName, [] { return Make<CNetHood>(); });
}

Ref<CDomain> SystemRoot::GetDomainFromServerName(const Text& server_name) {
  return ReRaisingAs(kClassName, [&] { return Engine().GetDomainFromServerName(server_name); });
}

Ref<CServer> SystemRoot::GetServer(const Text& server_name, const Text& domain_name) {
  return ReRaisingAs(kClassName, [&] { return Engine().GetServer(server_name, domain_name); });
}

Ref<CFolder> SystemRoot::GetFolder(const Text& path) {
  return ReRaisingAs(kClassName, [&] { return Engine().GetFolder(path); });
}

Ref<CFile> SystemRoot::GetFile(const Text& path) {
  return ReRaisingAs(kClassName, [&] { return Engine().GetFile(path); });
}

Ref<CStatus> SystemRoot::GetStatusObject() { return Apartment::Current().status; }

Date SystemRoot::ConvertUTCtoLocal(Date utc) {
  Date local;
  Swallow([&] { local = ConvertUtcToLocal(utc); });
  return local;
}

Ref<CGroups> SystemRoot::GetWellKnownGroups() { return Apartment::Current().well_known_groups; }

Text SystemRoot::LookupSidText(const Text& server_name, const Text&, const Text& account_name) {
  return ReRaising([&] {
    Text domain;
    std::vector<std::int32_t> words;
    SidTypeEnum sid_type{};
    Ref<CSid> sid;
    return Engine().GetSid(server_name, domain, account_name, words, sid_type, sid);
  });
}

Ref<CSecurityDescriptor> SystemRoot::CreateSDFromStringSD(const Text& string_sd,
                                                          const Text& sid_lookup_server) {
  return CreateSDFromStringSD2(string_sd, sid_lookup_server, Text());
}

Ref<CSecurityDescriptor> SystemRoot::CreateSDFromStringSD2(const Text& string_sd,
                                                           const Text& sid_lookup_server,
                                                           const Text& forest_root_dc) {
  return ReRaising([&] {
    return string_sd.empty()
               ? EmptyDescriptor()
               : Engine().ConvertStringSDToSD(string_sd, sid_lookup_server, forest_root_dc);
  });
}

Ref<CSecurityDescriptor> SystemRoot::CreateSDFromStringSD_API(const Text& string_sd,
                                                              const Text& sid_lookup_server) {
  return ReRaising([&] {
    return string_sd.empty() ? EmptyDescriptor()
                             : Engine().GetNamedSD(Text(), SE_DS_OBJECT, nullptr, Text(), Text(),
                                                   sid_lookup_server, string_sd);
  });
}

void SystemRoot::ClearSidCache() { Apartment::Current().sid_cache = Make<Collection>(); }

Ref<CRegistry> SystemRoot::GetRegistry() {
  return ReRaisingAs(kClassName, [] { return Make<CRegistry>(); });
}

Ref<CDomain> SystemRoot::GetDomain(const Text& domain_name) {
  return ReRaisingAs(kClassName, [&] {
    auto domain = Make<CDomain>();
    domain->DomainName = domain_name;
    return domain;
  });
}

Ref<CSecurityDescriptor> SystemRoot::CreateSD(std::int32_t) {
  Raise(kObsoleteFunction, u"Veldmark", u"Function is obsolete");
}

bool SystemRoot::CreateFolder(const Text& full_path) {
  return ReRaising([&] { return Engine().CreateFolder(ApiFolderPath(full_path)); });
}

bool SystemRoot::SetPrivilege(const Text& system_name, const Text& privilege_name, bool enable) {
  return ReRaising(
      [&] { return Engine().SetPrivilegesInAccessToken(system_name, privilege_name, enable); });
}

Ref<CSecurityDescriptor> SystemRoot::GetNamedSD(const Text& object_name, SE_OBJECT_TYPE object_type,
                                                const Text& sid_lookup_server) {
  return ReRaising([&] {
    const TextView parent_type = ParentTypeOf(object_type);
    return Engine().GetNamedSD(object_name, object_type, nullptr, Text(parent_type),
                               parent_type.empty() ? Text() : object_name, sid_lookup_server,
                               Text());
  });
}

void SystemRoot::SetNamedSD(CSecurityDescriptor* descriptor) {
  ReRaising([&] { Engine().SetNamedSD(descriptor); });
}

Ref<CSid> SystemRoot::GetSidObjectFromSid(const Variant& object_sid,
                                          const Text& resides_on_server) {
  return ReRaising([&] { return Engine().GetSidObjectFromSid(object_sid, resides_on_server); });
}

Ref<CSid> SystemRoot::GetSidFromText(const Text& sid_text) {
  return ReRaising([&] { return Engine().GetSidFromText(sid_text, Text()); });
}

Ref<CSid> SystemRoot::GetSidFromText2(const Text& sid_text, const Text& server_name) {
  return ReRaising([&] { return Engine().GetSidFromText(sid_text, server_name); });
}

bool SystemRoot::FileExists(const Text& path) {
  return ReRaising([&] { return Engine().FileExists(path); });
}

bool SystemRoot::FolderExists(const Text& path) {
  return ReRaisingAs(kClassName, [&] { return Engine().FolderExists(path); });
}

Text SystemRoot::ReadTextFile(const Text& file_name) {
  return ReRaising([&] { return Engine().ReadTextFile(file_name); });
}

bool SystemRoot::WriteTextFile(const Text& file_name, const Text& contents, bool write_as_unicode) {
  return ReRaising([&] {
    Engine().WriteTextFile(file_name, contents, write_as_unicode);
    return true;
  });
}

Text SystemRoot::ReadTextFileAPI(const Text& file_name) {
  return ReRaising([&] { return Engine().ReadTextFileAPI(file_name); });
}

ByteArray SystemRoot::ReadBinaryFileAPI(const Text& file_name) {
  return ReRaising([&] { return Engine().ReadBinaryFileAPI(file_name); });
}

std::int32_t SystemRoot::WriteBinaryFileAPI(const Text& file_name, ByteArray& data) {
  return ReRaising([&] { return Engine().WriteBinaryFileAPI(file_name, data); });
}

void SystemRoot::CopyFile(const Text& existing_file, const Text& new_file, bool overwrite) {
  ReRaising([&] { Engine().CopyFile(existing_file, new_file, overwrite); });
}

bool SystemRoot::AddNetworkConnection(const Text& local_name, const Text& remote_name,
                                      const Text& user_name, const Secret& password,
                                      ResourceTypeEnum resource_type, std::int32_t owner_window,
                                      bool make_persistent) {
  return ReRaisingAs(kClassName, [&] {
    // Window handles have 32 bits that count, sign-extended.
    const auto owner = reinterpret_cast<HWND>(std::intptr_t{owner_window});
    Engine().AddNetworkConnection(local_name, remote_name, user_name, password,
                                  static_cast<DWORD>(resource_type), owner, make_persistent);
    return true;
  });
}

bool SystemRoot::CancelNetworkConnection(const Text& remote_name, bool make_persistent,
                                         bool force) {
  return ReRaisingAs(kClassName, [&] {
    Engine().CancelNetworkConnection(remote_name, make_persistent, force);
    return true;
  });
}

Ref<CUser> SystemRoot::GetUser(const Text& account_domain, const Text& user_name) {
  return ReRaising([&] {
    const AccountPlace place(account_domain);
    auto user = Make<CUser>();
    user->SetDomainName(place.domain_name);
    user->SetServerName(place.server_name);
    user->UserType = place.is_domain ? UT_GlobalUser : UT_LocalUser;
    user->UserName = user_name;
    Engine().PopulateUser(*user);
    return user;
  });
}

Ref<CGroup> SystemRoot::GetGroup(const Text& account_domain, const Text& group_name) {
  return ReRaising([&] {
    const AccountPlace place(account_domain);
    auto group = Make<CGroup>();
    group->DomainName = place.domain_name;
    group->ServerName = place.server_name;
    group->GroupType = place.is_domain ? GT_GlobalGroup : GT_LocalGroup;
    group->GroupName = group_name;
    Engine().PopulateGroup(*group);
    return group;
  });
}

}  // namespace veldmark
