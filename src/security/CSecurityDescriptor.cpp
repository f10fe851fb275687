#include "security/CSecurityDescriptor.h"

#include <array>
#include <vector>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "platform/operations/ErrorCodes.h"
#include "security/CAcl.h"
#include "security/CSid.h"
#include "security/Guid.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CSecurityDescriptor";

/// The generic rights of a client's question, whatever the object.
constexpr GENERIC_MAPPING kCheckMapping = {0x20094, 0x20028, 0x20004, 0xF01FF};

/// The room that the privileges of an answer take, an element for each byte of it and one more.
using PrivilegeElement = std::array<std::uint64_t, 4>;

}  // namespace

const Interface& CSecurityDescriptor::Describe() {
  static const Interface table =
      Declare<CSecurityDescriptor>(
          u"CSecurityDescriptor",
          u"Owner and discretionary access control list of a securable object.")
          .Method<&CSecurityDescriptor::GetOwnerSid>(u"GetOwnerSid", u"The owner.")
          .Method<&CSecurityDescriptor::GetDACL>(u"GetDACL", u"The access control list.")
          .Get<&CSecurityDescriptor::Revision>(u"Revision", u"1.")
          .Get<&CSecurityDescriptor::Control>(u"Control", u"Values of SDControlEnum.")
          .Get<&CSecurityDescriptor::BinarySD>(u"BinarySD", u"Its bytes as they were read.")
          .Method<&CSecurityDescriptor::Save>(u"Save", u"Writes the list back to its object.")
          .Remark(
              u"The owner isn't written, nor are denied entries that are inherited or without "
              u"rights and entries of types other than 0, 1, 5 and 6: the object loses them, "
              u"unless it inherits them anew. Raises 91 without a list, and the platform's "
              u"error.")
          .Stored<&CSecurityDescriptor::ParentObjectType>(
              u"ParentObjectType", u"The class of the secured object, or \"LDAP\".")
          .Stored<&CSecurityDescriptor::ParentObjectPath>(u"ParentObjectPath",
                                                          u"Where the secured object is.")
          .Method<&CSecurityDescriptor::CheckAccess>(
              u"CheckAccess", u"True if a client has these rights.",
              {u"ClientToken", u"AccessMask", {u"ObjectTypeGUID", u""}, {u"ObjectTypeLevel", 0}});
  return table;
}

CSecurityDescriptor::CSecurityDescriptor() = default;
CSecurityDescriptor::~CSecurityDescriptor() = default;

Ref<CSid> CSecurityDescriptor::GetOwnerSid() const { return owner_sid_; }

Ref<CAcl> CSecurityDescriptor::GetDACL() const { return dacl_; }

void CSecurityDescriptor::Save() {
  ReRaisingAs(kClassName, [&] { Engine().SetNamedSD(this); });
}

bool CSecurityDescriptor::CheckAccess(std::int32_t ClientToken, std::int32_t AccessMask,
                                      const Text& ObjectTypeGUID, std::int32_t ObjectTypeLevel) {
  return ReRaisingAs(kClassName, [&] {
    const auto* const descriptor = binary_sd_.If<ByteArray>();
    if (!descriptor) Raise(runtime_error::kTypeMismatch);
    GUID object_type;
    OBJECT_TYPE_LIST list{};
    OBJECT_TYPE_LIST* asked = nullptr;
    if (!ObjectTypeGUID.empty()) {
      object_type = ConvertStringToGUID2(ObjectTypeGUID);
      list = {static_cast<WORD>(ObjectTypeLevel), 0, &object_type};
      asked = &list;
    }
    GENERIC_MAPPING mapping = kCheckMapping;
    Security& security = Apartment::Current().platform.security;
    std::vector<PrivilegeElement> privileges;
    DWORD length = 0;
    DWORD known_length = 0;
    DWORD granted = 0;
    BOOL allowed = 0;
    for (;;) {
      const BOOL asked_well = security.AccessCheckByType(
          descriptor->elements.data(), nullptr,
          reinterpret_cast<HANDLE>(std::intptr_t{ClientToken}), static_cast<DWORD>(AccessMask),
          asked, asked ? 1 : 0, &mapping, privileges.empty() ? nullptr : privileges.data(), &length,
          &granted, &allowed);
      if (asked_well) return allowed != 0;
      const bool too_small =
          Err().LastDllError() == static_cast<std::int32_t>(kErrorInsufficientBuffer);
      if (!too_small || length <= known_length) RaisePlatformError(Err().LastDllError());
      known_length = length;
      privileges.assign(std::size_t{length} + 1, {});
    }
  });
}

void CSecurityDescriptor::SetOwnerSid(Ref<CSid> sid) { owner_sid_ = std::move(sid); }

void CSecurityDescriptor::SetDACL(Ref<CAcl> dacl) { dacl_ = std::move(dacl); }

void CSecurityDescriptor::SetParentObject(Text type, Text path) {
  ParentObjectType = std::move(type);
  ParentObjectPath = std::move(path);
}

void CSecurityDescriptor::SetHeader(std::uint8_t revision, std::int16_t control) {
  revision_ = revision;
  control_ = control;
}

void CSecurityDescriptor::SetBinary(std::uint8_t revision, std::int16_t control, ByteArray bytes) {
  SetHeader(revision, control);
  binary_sd_ = Variant(std::move(bytes));
}

}  // namespace veldmark
