#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Platform.h"
#include "platform/operations/Records.h"
#include "support/SecurityText.h"

namespace veldmark {

/// Asks the network's operations for blocks and reads what is in them.
class NetworkCalls {
 public:
  explicit NetworkCalls(const Platform& platform)
      : net(platform.network_management),
        accounts(platform.accounts),
        authority(platform.authority),
        buffer(net) {}

  /// The code of a call. Not among the arguments are the block that it hands out and, where it
  /// lists, how much is asked for, how much there is, and where it goes on.
  template <class Family, class... Formal, class... Asked>
  DWORD Ask(DWORD (Family::*call)(Formal...), Asked... asked) {
    Family& family = std::get<Family&>(std::tie(net, accounts));
    constexpr std::size_t kRest = sizeof...(Formal) - sizeof...(Asked);
    DWORD code = 0;
    BYTE** const block = buffer.Receive();
    *block = unset;
    if constexpr (kRest == 1) {
      code = (family.*call)(asked..., block);
    } else if constexpr (kRest == 4) {
      code = (family.*call)(asked..., block, room, &read, &total);
    } else {
      using Last = std::tuple_element_t<sizeof...(Formal) - 1, std::tuple<Formal...>>;
      auto typed = static_cast<std::remove_pointer_t<Last>>(resume);
      code = (family.*call)(asked..., block, room, &read, &total, &typed);
      resume = typed;
      EXPECT_EQ(resume != 0, code == kErrorMoreData);
      EXPECT_LE(read, total);
    }
    if (code != 0 && code != kErrorMoreData) {
      EXPECT_EQ(buffer.Release(), nullptr) << code;
    }
    return code;
  }

  /// The record that lies at the start of the block.
  template <class Record>
  Record First() {
    Record record{};
    if (buffer) std::memcpy(&record, buffer.Get(), sizeof record);
    return record;
  }

  /// What the first field of each record names.
  template <class Record>
  std::vector<Text> NamesIn() const {
    std::vector<Text> names;
    for (const Record& record : RecordsIn<Record>(buffer.Get(), read)) {
      LPWSTR name;
      std::memcpy(&name, &record, sizeof name);
      names.emplace_back(name);
    }
    return names;
  }

  /// The SIDs of those who hold a right, or the code that asking ends with.
  std::vector<std::string> HoldersOf(Text right, LPCWSTR system = nullptr, DWORD access = 0x801) {
    const auto record = [](Text& text) {
      const auto size = static_cast<WORD>(text.size() * sizeof(WCHAR));
      return LSA_UNICODE_STRING{size, size, text.data()};
    };
    Text computer(system == nullptr ? u"" : system);
    LSA_UNICODE_STRING computer_name = record(computer), name = record(right);
    LSA_OBJECT_ATTRIBUTES attributes{};
    Policy policy(authority);
    AuthorityMemory memory(authority);
    DWORD count = 0;
    NTSTATUS status = authority.LsaOpenPolicy(system == nullptr ? nullptr : &computer_name,
                                              &attributes, access, policy.Receive());
    if (status == 0) {
      status = authority.LsaEnumerateAccountsWithUserRight(policy.Get(), &name, memory.Receive(),
                                                           &count);
    }
    if (status != 0) return {std::to_string(authority.LsaNtStatusToWinError(status))};
    std::vector<std::string> sids;
    for (const auto& holder : RecordsIn<LSA_ENUMERATION_INFORMATION>(memory.Get(), count)) {
      const auto* const sid = static_cast<const std::uint8_t*>(holder.Sid);
      sids.push_back(*sid == 1 ? SecurityText::OfSid(sid) : "none");
    }
    return sids;
  }

  NetworkManagement& net;
  AccountManagement& accounts;
  LocalSecurityAuthority& authority;
  NetworkBuffer buffer;
  BYTE* unset = reinterpret_cast<BYTE*>(this);  ///< in a block's place before a call
  DWORD room = kMaxPreferredLength;
  DWORD read = 0;
  DWORD total = 0;
  UINT_PTR resume = 0;
};

}  // namespace veldmark
