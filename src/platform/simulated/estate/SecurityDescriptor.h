#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/operations/Security.h"
#include "platform/simulated/estate/Sid.h"

namespace veldmark::simulated {

inline constexpr BYTE kAceAllowed = 0;
inline constexpr BYTE kAceDenied = 1;
inline constexpr BYTE kAceAudit = 2;
inline constexpr BYTE kAceAlarm = 3;
inline constexpr BYTE kAceAllowedObject = 5;
inline constexpr BYTE kAceDeniedObject = 6;
inline constexpr BYTE kAceAuditObject = 7;
inline constexpr BYTE kAceAlarmObject = 8;
inline constexpr BYTE kAceMandatoryLabel = 17;

inline constexpr BYTE kObjectInherit = 0x01;
inline constexpr BYTE kContainerInherit = 0x02;
inline constexpr BYTE kNoPropagateInherit = 0x04;
inline constexpr BYTE kInheritOnly = 0x08;
inline constexpr BYTE kInherited = 0x10;

inline constexpr WORD kDaclPresent = 0x0004;
inline constexpr WORD kSaclPresent = 0x0010;
inline constexpr WORD kDaclAutoInheritRequest = 0x0100;
inline constexpr WORD kSaclAutoInheritRequest = 0x0200;
inline constexpr WORD kDaclAutoInherited = 0x0400;
inline constexpr WORD kSaclAutoInherited = 0x0800;
inline constexpr WORD kDaclProtected = 0x1000;
inline constexpr WORD kSaclProtected = 0x2000;
inline constexpr WORD kSelfRelative = 0x8000;

// One entry of an access list.
struct Ace {
  BYTE type = kAceAllowed;
  BYTE flags = 0;
  DWORD mask = 0;
  std::optional<GUID> object_type{};
  std::optional<GUID> inherited_object_type{};
  Sid sid{};
  std::vector<std::uint8_t> rest{};  // behind the SID; all of the body where the type isn't known

  bool IsObject() const { return type >= kAceAllowedObject && type <= kAceAlarmObject; }
  bool IsKnown() const { return type <= kAceAlarm || IsObject() || type == kAceMandatoryLabel; }
  bool Allows() const { return type == kAceAllowed || type == kAceAllowedObject; }
  bool Denies() const { return type == kAceDenied || type == kAceDeniedObject; }
  bool operator==(const Ace&) const = default;
};

using AccessList = std::vector<Ace>;

// A descriptor in parts. A list that is said to be present in `control` and isn't there is a null
// list: it lets everybody do everything.
struct SecurityDescriptor {
  WORD control = 0;
  Sid owner;
  Sid group;
  std::optional<AccessList> sacl;
  std::optional<AccessList> dacl;

  bool operator==(const SecurityDescriptor&) const = default;
};

// The list in the published form; of one over its 65,535 bytes what fits.
std::vector<std::uint8_t> BytesOf(const AccessList& list);

// The parts that `information` (k...SecurityInformation) names, in the published self-relative
// form.
std::vector<std::uint8_t> BytesOf(const SecurityDescriptor& descriptor, DWORD information);

// The list at an address that a caller vouches for; nothing unless it is sound.
std::optional<AccessList> ReadAccessList(const void* address);

// The same for a self-relative descriptor. `error` is 1338, 1337 for a SID in it or 1336 for a list
// if it isn't sound.
std::optional<SecurityDescriptor> ReadSecurityDescriptor(const void* address, DWORD& error);

// Where a part of a self-relative descriptor lies; null if it has none. `field` is the offset's own
// place in the header.
inline constexpr std::size_t kOwnerField = 4;
inline constexpr std::size_t kGroupField = 8;
inline constexpr std::size_t kSaclField = 12;
inline constexpr std::size_t kDaclField = 16;
void* PartOf(void* descriptor, std::size_t field);

}  // namespace veldmark::simulated
