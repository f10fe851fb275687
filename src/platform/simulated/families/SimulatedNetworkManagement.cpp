#include "platform/simulated/families/SimulatedNetworkManagement.h"

#include <algorithm>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate/SecurityDescriptor.h"
#include "platform/simulated/families/NetworkCall.h"
#include "platform/simulated/families/Statuses.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kServerTypeDomainEnum = 0x80000000;
constexpr DWORD kShareSecurityLevel = 502;

// One line of a browse list: a computer or, where those are asked for, a domain.
struct Listed {
  TextView name;
  DWORD type;
  DWORD version_major;
  DWORD version_minor;
  TextView comment;
};

void Fill(SERVER_INFO_100& record, const Listed& listed, RecordBlock& block) {
  record.sv100_platform_id = kPlatformIdNt;
  record.sv100_name = block.Put(listed.name);
}

void Fill(SERVER_INFO_101& record, const Listed& listed, RecordBlock& block) {
  record.sv101_platform_id = kPlatformIdNt;
  record.sv101_name = block.Put(listed.name);
  record.sv101_version_major = listed.version_major;
  record.sv101_version_minor = listed.version_minor;
  record.sv101_type = listed.type;
  record.sv101_comment = block.Put(listed.comment);
}

Listed ListedOf(const Computer& computer) {
  const ServerDescription& description = computer.description();
  return {computer.name(), computer.server_type(), description.version_major,
          description.version_minor, description.comment};
}

void Fill(SERVER_INFO_102& record, const Computer& computer, RecordBlock& block) {
  const ServerDescription& description = computer.description();
  record.sv102_platform_id = kPlatformIdNt;
  record.sv102_name = block.Put(computer.name());
  record.sv102_version_major = description.version_major;
  record.sv102_version_minor = description.version_minor;
  record.sv102_type = computer.server_type();
  record.sv102_comment = block.Put(description.comment);
  record.sv102_users = description.users;
  record.sv102_disc = description.disconnect_minutes;
  record.sv102_hidden = description.hidden ? 1 : 0;
  record.sv102_announce = description.announce_seconds;
  record.sv102_anndelta = description.announce_delta;
  record.sv102_licenses = description.licenses;
  record.sv102_userpath = block.Put(description.user_path);
}

void Fill(WKSTA_INFO_100& record, const Computer& computer, RecordBlock& block) {
  record.wki100_platform_id = kPlatformIdNt;
  record.wki100_computername = block.Put(computer.name());
  record.wki100_langroup = block.Put(computer.group());
  record.wki100_ver_major = computer.description().version_major;
  record.wki100_ver_minor = computer.description().version_minor;
}

void Fill(SHARE_INFO_1& record, const Share& share, RecordBlock& block) {
  record.shi1_netname = block.Put(share.name);
  record.shi1_type = share.type;
  record.shi1_remark = block.Put(share.remark);
}

void Fill(SHARE_INFO_2& record, const Share& share, RecordBlock& block) {
  record.shi2_netname = block.Put(share.name);
  record.shi2_type = share.type;
  record.shi2_remark = block.Put(share.remark);
  record.shi2_permissions = share.permissions;
  record.shi2_max_uses = share.maximum_uses;
  record.shi2_current_uses = share.current_uses;
  record.shi2_path = block.Put(share.path);
}

void Fill(SHARE_INFO_502& record, const Share& share, RecordBlock& block) {
  record.shi502_netname = block.Put(share.name);
  record.shi502_type = share.type;
  record.shi502_remark = block.Put(share.remark);
  record.shi502_permissions = share.permissions;
  record.shi502_max_uses = share.maximum_uses;
  record.shi502_current_uses = share.current_uses;
  record.shi502_path = block.Put(share.path);
  if (share.security != nullptr) {
    constexpr DWORD kParts =
        kOwnerSecurityInformation | kGroupSecurityInformation | kDaclSecurityInformation;
    const std::vector<std::uint8_t> descriptor = BytesOf(share.security->descriptor(), kParts);
    record.shi502_security_descriptor = block.Put(descriptor.data(), descriptor.size());
  }
}

constexpr auto kFill = [](auto& record, const auto& item, RecordBlock& block) {
  Fill(record, item, block);
};

std::vector<Listed> BrowseList(const Estate& estate, const Domain& domain, DWORD type) {
  std::vector<Listed> list;
  for (const Computer& computer : estate.computers()) {
    const bool is_there = computer.is_listed() && EqualNoCase(computer.group(), domain.name);
    if (is_there && (computer.server_type() & type) != 0) list.push_back(ListedOf(computer));
  }
  return list;
}

std::vector<Listed> DomainList(const Estate& estate) {
  std::vector<Listed> list;
  for (const Domain& domain : estate.domains()) {
    if (!estate.HasMembers(domain)) continue;
    constexpr DWORD kType = kServerTypeDomainEnum | kServerTypeNt;
    list.push_back({domain.name, kType, 10, 0, domain.comment});
  }
  return list;
}

}  // namespace

DWORD SimulatedNetworkManagement::NetServerEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                                DWORD preferred_length, DWORD* entries_read,
                                                DWORD* total_entries, DWORD server_type,
                                                LPCWSTR domain_name, DWORD* resume_handle) {
  // The published operation takes a resume handle and does without it.
  const Reply<DWORD> reply{buffer, preferred_length, entries_read, total_entries, nullptr};
  if (resume_handle != nullptr) *resume_handle = 0;
  const NetworkCall call(session_, "NetServerEnum", Noted(server_name, ViewOf(domain_name), level),
                         server_name, Clear(reply), level == 100 || level == 101);
  if (call.error() != 0) return call.error();
  Estate& estate = session_.estate;
  const TextView named = ViewOf(domain_name);
  const Domain* const domain =
      estate.FindDomain(named.empty() ? TextView(call.computer().group()) : named);
  if (domain == nullptr || !domain->has_browse_list || !estate.HasMembers(*domain)) {
    return kErrorNoBrowserServers;
  }
  std::vector<Listed> list = server_type == kServerTypeDomainEnum
                                 ? DomainList(estate)
                                 : BrowseList(estate, *domain, server_type);
  std::ranges::sort(list, {}, [](const Listed& listed) { return ToUpper(listed.name); });
  return level == 100 ? Answer<SERVER_INFO_100>(call, list, 0, reply, kFill)
                      : Answer<SERVER_INFO_101>(call, list, 0, reply, kFill);
}

DWORD SimulatedNetworkManagement::NetServerGetInfo(LPCWSTR server_name, DWORD level,
                                                   BYTE** buffer) {
  const NetworkCall call(session_, "NetServerGetInfo", Noted(server_name, level), server_name,
                         Clear(buffer), level >= 100 && level <= 102);
  if (call.error() != 0) return call.error();
  const Computer& computer = call.computer();
  if (level == 102) {
    if (!session_.estate.IsAdministrator(computer)) return kErrorAccessDenied;
    *buffer = HandOutOne<SERVER_INFO_102>(call, computer, kFill);
  } else if (level == 101) {
    *buffer = HandOutOne<SERVER_INFO_101>(call, ListedOf(computer), kFill);
  } else {
    *buffer = HandOutOne<SERVER_INFO_100>(call, ListedOf(computer), kFill);
  }
  return 0;
}

DWORD SimulatedNetworkManagement::NetWkstaGetInfo(LPCWSTR server_name, DWORD level, BYTE** buffer) {
  const NetworkCall call(session_, "NetWkstaGetInfo", Noted(server_name, level), server_name,
                         Clear(buffer), level == 100);
  if (call.error() != 0) return call.error();
  *buffer = HandOutOne<WKSTA_INFO_100>(call, call.computer(), kFill);
  return 0;
}

DWORD SimulatedNetworkManagement::NetGetDCName(LPCWSTR server_name, LPCWSTR domain_name,
                                               BYTE** buffer) {
  const TextView named = ViewOf(domain_name);
  const NetworkCall call(session_, "NetGetDCName", Noted(server_name, named), server_name,
                         Clear(buffer));
  if (call.error() != 0) return call.error();
  Estate& estate = session_.estate;
  const Domain* const domain =
      estate.FindDomain(named.empty() ? TextView(call.computer().group()) : named);
  const Computer* const controller =
      domain == nullptr ? nullptr : estate.FindController(*domain, true);
  if (controller == nullptr) return kErrorDcNotFound;
  const Text name = u"\\\\" + controller->name();
  const std::size_t size = (name.size() + 1) * sizeof(WCHAR);
  *buffer = call.Allocate(size);
  std::memcpy(*buffer, name.c_str(), size);
  return 0;
}

DWORD SimulatedNetworkManagement::NetEnumerateTrustedDomains(LPCWSTR server_name,
                                                             LPWSTR* domain_names) {
  constexpr std::string_view kName = "NetEnumerateTrustedDomains";
  const Text noted = Noted(server_name);
  if (domain_names != nullptr) *domain_names = nullptr;
  const Call call = session_.Begin(kName, noted);
  if (const DWORD fault = call.fault()) return Unsigned(StatusOf(fault));
  if (domain_names == nullptr) return Unsigned(kStatusInvalidParameter);
  Estate& estate = session_.estate;
  const Computer* const server = estate.ReachServer(server_name);
  if (server == nullptr) return Unsigned(kStatusServerUnavailable);
  const Domain* const domain = estate.FindDomain(server->group());
  Text names;
  if (domain != nullptr && !domain->is_workgroup()) {
    for (const Text& trusted : domain->trusts) names += trusted + u'\0';
  }
  names += u'\0';
  const std::size_t size = names.size() * sizeof(WCHAR);
  *domain_names = static_cast<LPWSTR>(session_.AllocateNetwork(size, kName, ToUtf8(noted)));
  std::memcpy(*domain_names, names.data(), size);
  return 0;
}

DWORD SimulatedNetworkManagement::NetShareEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                               DWORD preferred_length, DWORD* entries_read,
                                               DWORD* total_entries, DWORD* resume_handle) {
  const Reply reply{buffer, preferred_length, entries_read, total_entries, resume_handle};
  const NetworkCall call(session_, "NetShareEnum", Noted(server_name, level), server_name,
                         Clear(reply), level == 1 || level == 2);
  if (call.error() != 0) return call.error();
  const Computer& computer = call.computer();
  if (level == 2 && !session_.estate.IsAdministrator(computer)) return kErrorAccessDenied;
  std::vector<const Share*> shares;
  for (const auto& [key, share] : computer.shares()) shares.push_back(&share);
  const auto fill = [](auto& record, const Share* share, RecordBlock& block) {
    Fill(record, *share, block);
  };
  std::size_t page = computer.page();
  if (level == 2) {
    const std::size_t asked = resume_handle == nullptr ? 0 : *resume_handle;
    const auto first = shares.begin() + std::min(asked, shares.size());
    const auto closed =
        std::find_if(first, shares.end(), [](auto* s) { return s->details_denied; });
    if (closed != shares.end()) {
      if (closed == first) return kErrorAccessDenied;
      const auto before = static_cast<std::size_t>(closed - first);
      page = page == 0 ? before : std::min(page, before);
    }
  }
  return level == 1 ? Answer<SHARE_INFO_1>(call, shares, page, reply, fill)
                    : Answer<SHARE_INFO_2>(call, shares, page, reply, fill);
}

DWORD SimulatedNetworkManagement::NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name,
                                                  DWORD level, BYTE** buffer) {
  const TextView name = ViewOf(net_name);
  const bool is_sound = Clear(buffer) && !name.empty();
  const NetworkCall call(session_, "NetShareGetInfo", Text(name), server_name, is_sound);
  if (call.error() != 0) return call.error();
  if (level != kShareSecurityLevel) return kErrorInvalidLevel;
  // Where a share leads and who may use it is told to administrators only.
  if (!session_.estate.IsAdministrator(call.computer())) return kErrorAccessDenied;
  const Share* const share = call.computer().FindShare(name);
  if (share == nullptr) return kErrorNetNameNotFound;
  if (share->details_denied) return kErrorAccessDenied;
  *buffer = HandOutOne<SHARE_INFO_502>(call, *share, kFill);
  return 0;
}

DWORD SimulatedNetworkManagement::NetShareDel(LPCWSTR server_name, LPCWSTR net_name, DWORD) {
  const TextView name = ViewOf(net_name);
  const NetworkCall call(session_, "NetShareDel", Noted(server_name, name), server_name,
                         !name.empty());
  if (call.error() != 0) return call.error();
  if (!session_.estate.IsAdministrator(call.computer())) return kErrorAccessDenied;
  return call.computer().RemoveShare(name) ? kErrorSuccess : kErrorNetNameNotFound;
}

DWORD SimulatedNetworkManagement::NetServerDiskEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                                    DWORD preferred_length, DWORD* entries_read,
                                                    DWORD* total_entries, DWORD* resume_handle) {
  struct Disk {
    WCHAR name[3];
  };
  const Reply reply{buffer, preferred_length, entries_read, total_entries, resume_handle};
  const NetworkCall call(session_, "NetServerDiskEnum", Noted(server_name, level), server_name,
                         Clear(reply), level == 0);
  if (call.error() != 0) return call.error();
  const Computer& computer = call.computer();
  if (!session_.estate.IsAdministrator(computer)) return kErrorAccessDenied;
  std::vector<Disk> disks;
  for (const auto& [letter, drive] : computer.drives()) disks.push_back({{letter, u':', u'\0'}});
  return Answer<Disk>(call, disks, computer.page(), reply,
                      [](Disk& record, const Disk& disk, RecordBlock&) { record = disk; });
}

DWORD SimulatedNetworkManagement::NetApiBufferFree(void* buffer) {
  const Call call = session_.Begin("NetApiBufferFree");
  const DWORD fault = call.fault();
  if (buffer == nullptr) return fault;
  if (!session_.ledger.Closed(Resource::NetworkBuffer, reinterpret_cast<std::uintptr_t>(buffer),
                              "NetApiBufferFree")) {
    return kErrorInvalidParameter;
  }
  session_.network_memory.erase(buffer);
  return fault;
}

}  // namespace veldmark::simulated
