#include "platform/simulated/estate/SecurityDescriptor.h"

#include <cstring>

#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kListHeaderSize = 8;
constexpr std::size_t kLongestList = 0xFFFF;
constexpr std::size_t kAceHeaderSize = 4;
constexpr std::size_t kDescriptorHeaderSize = 20;
constexpr BYTE kListRevision = 2;
constexpr BYTE kObjectListRevision = 4;
constexpr DWORD kObjectTypePresent = 1;
constexpr DWORD kInheritedObjectTypePresent = 2;

template <typename T>
T At(const std::uint8_t* bytes, std::size_t offset) {
  T value;
  std::memcpy(&value, bytes + offset, sizeof value);
  return value;
}

template <typename T>
void Append(std::vector<std::uint8_t>& bytes, const T& value) {
  const auto* const start = reinterpret_cast<const std::uint8_t*>(&value);
  bytes.insert(bytes.end(), start, start + sizeof value);
}

void Append(std::vector<std::uint8_t>& bytes, const std::vector<std::uint8_t>& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void AppendAce(std::vector<std::uint8_t>& bytes, const Ace& ace) {
  const std::size_t start = bytes.size();
  bytes.insert(bytes.end(), {ace.type, ace.flags, 0, 0});
  if (ace.IsKnown()) Append(bytes, ace.mask);
  if (ace.IsObject()) {
    Append(bytes, (ace.object_type ? kObjectTypePresent : 0) |
                      (ace.inherited_object_type ? kInheritedObjectTypePresent : 0));
    if (ace.object_type) Append(bytes, *ace.object_type);
    if (ace.inherited_object_type) Append(bytes, *ace.inherited_object_type);
  }
  Append(bytes, ace.sid.bytes());
  Append(bytes, ace.rest);
  const auto size = static_cast<WORD>(bytes.size() - start);
  std::memcpy(bytes.data() + start + 2, &size, sizeof size);
}

std::optional<Ace> ReadAce(std::span<const std::uint8_t> bytes) {
  Ace ace;
  ace.type = bytes[0];
  ace.flags = bytes[1];
  std::size_t offset = kAceHeaderSize;
  if (ace.IsKnown()) {
    if (bytes.size() < offset + sizeof(DWORD)) return std::nullopt;
    ace.mask = At<DWORD>(bytes.data(), offset);
    offset += sizeof(DWORD);
    if (ace.IsObject()) {
      if (bytes.size() < offset + sizeof(DWORD)) return std::nullopt;
      const auto present = At<DWORD>(bytes.data(), offset);
      offset += sizeof(DWORD);
      for (const DWORD bit : {kObjectTypePresent, kInheritedObjectTypePresent}) {
        if ((present & bit) == 0) continue;
        if (bytes.size() < offset + sizeof(GUID)) return std::nullopt;
        (bit == kObjectTypePresent ? ace.object_type : ace.inherited_object_type) =
            At<GUID>(bytes.data(), offset);
        offset += sizeof(GUID);
      }
    }
    const auto sid = Sid::FromBytes(bytes.subspan(offset));
    if (!sid) return std::nullopt;
    ace.sid = *sid;
    offset += sid->bytes().size();
  }
  ace.rest.assign(bytes.begin() + static_cast<std::ptrdiff_t>(offset), bytes.end());
  return ace;
}

}  // namespace

std::vector<std::uint8_t> BytesOf(const AccessList& list) {
  BYTE revision = kListRevision;
  for (const Ace& ace : list) {
    if (ace.IsObject()) revision = kObjectListRevision;
  }
  std::vector<std::uint8_t> bytes(kListHeaderSize);
  bytes[0] = revision;
  WORD count = 0;
  for (const Ace& ace : list) {
    const std::size_t before = bytes.size();
    AppendAce(bytes, ace);
    if (bytes.size() > kLongestList) {
      bytes.resize(before);
      break;
    }
    ++count;
  }
  const auto size = static_cast<WORD>(bytes.size());
  std::memcpy(bytes.data() + 2, &size, sizeof size);
  std::memcpy(bytes.data() + 4, &count, sizeof count);
  return bytes;
}

std::vector<std::uint8_t> BytesOf(const SecurityDescriptor& descriptor, DWORD information) {
  constexpr WORD kDaclBits =
      kDaclPresent | kDaclAutoInheritRequest | kDaclAutoInherited | kDaclProtected;
  constexpr WORD kSaclBits =
      kSaclPresent | kSaclAutoInheritRequest | kSaclAutoInherited | kSaclProtected;
  std::vector<std::uint8_t> bytes(kDescriptorHeaderSize);
  WORD control = kSelfRelative;
  const auto part = [&](std::size_t field, const std::vector<std::uint8_t>& content) {
    if (content.empty()) return;
    const auto offset = static_cast<DWORD>(bytes.size());
    std::memcpy(bytes.data() + field, &offset, sizeof offset);
    Append(bytes, content);
    bytes.resize((bytes.size() + 3) / 4 * 4);
  };
  if ((information & kSaclSecurityInformation) != 0) {
    control = static_cast<WORD>(control | (descriptor.control & kSaclBits));
    if (descriptor.sacl) part(kSaclField, BytesOf(*descriptor.sacl));
  }
  if ((information & kDaclSecurityInformation) != 0) {
    control = static_cast<WORD>(control | (descriptor.control & kDaclBits));
    if (descriptor.dacl) part(kDaclField, BytesOf(*descriptor.dacl));
  }
  if ((information & kOwnerSecurityInformation) != 0) part(kOwnerField, descriptor.owner.bytes());
  if ((information & kGroupSecurityInformation) != 0) part(kGroupField, descriptor.group.bytes());
  bytes[0] = 1;
  std::memcpy(bytes.data() + 2, &control, sizeof control);
  return bytes;
}

std::optional<AccessList> ReadAccessList(const void* address) {
  const auto* const bytes = static_cast<const std::uint8_t*>(address);
  if (bytes == nullptr || bytes[0] < kListRevision || bytes[0] > kObjectListRevision) {
    return std::nullopt;
  }
  const std::size_t size = At<WORD>(bytes, 2);
  const auto count = At<WORD>(bytes, 4);
  if (size < kListHeaderSize) return std::nullopt;
  AccessList list;
  std::size_t offset = kListHeaderSize;
  for (WORD index = 0; index < count; ++index) {
    if (size - offset < kAceHeaderSize) return std::nullopt;
    const std::size_t ace_size = At<WORD>(bytes, offset + 2);
    if (ace_size < kAceHeaderSize || ace_size > size - offset) return std::nullopt;
    auto ace = ReadAce({bytes + offset, ace_size});
    if (!ace || (ace->IsObject() && bytes[0] < kObjectListRevision)) return std::nullopt;
    list.push_back(std::move(*ace));
    offset += ace_size;
  }
  return list;
}

std::optional<SecurityDescriptor> ReadSecurityDescriptor(const void* address, DWORD& error) {
  const auto* const bytes = static_cast<const std::uint8_t*>(address);
  error = kErrorInvalidSecurityDescriptor;
  if (bytes == nullptr || bytes[0] != 1) return std::nullopt;
  SecurityDescriptor descriptor;
  descriptor.control = At<WORD>(bytes, 2);
  if ((descriptor.control & kSelfRelative) == 0) return std::nullopt;
  const auto part = [&](std::size_t field) -> const std::uint8_t* {
    const auto offset = At<DWORD>(bytes, field);
    return offset == 0 ? nullptr : bytes + offset;
  };
  error = kErrorInvalidSid;
  for (const std::size_t field : {kOwnerField, kGroupField}) {
    if (part(field) == nullptr) continue;
    const auto sid = Sid::FromAddress(part(field));
    if (!sid) return std::nullopt;
    (field == kOwnerField ? descriptor.owner : descriptor.group) = *sid;
  }
  error = kErrorInvalidAcl;
  if ((descriptor.control & kSaclPresent) != 0 && part(kSaclField) != nullptr) {
    descriptor.sacl = ReadAccessList(part(kSaclField));
    if (!descriptor.sacl) return std::nullopt;
  }
  if ((descriptor.control & kDaclPresent) != 0 && part(kDaclField) != nullptr) {
    descriptor.dacl = ReadAccessList(part(kDaclField));
    if (!descriptor.dacl) return std::nullopt;
  }
  error = 0;
  return descriptor;
}

void* PartOf(void* descriptor, std::size_t field) {
  auto* const bytes = static_cast<std::uint8_t*>(descriptor);
  const auto offset = At<DWORD>(bytes, field);
  return offset == 0 ? nullptr : bytes + offset;
}

}  // namespace veldmark::simulated
