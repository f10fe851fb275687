#include "security/AccessRights.h"

namespace veldmark {
namespace {

constexpr GENERIC_MAPPING kFileMapping = {0x120089, 0x120116, 0x1200A0, 0x1F01FF};
constexpr GENERIC_MAPPING kServiceMapping = {0x120089, 0x120116, 0x1200A0, 0xF01FF};
constexpr GENERIC_MAPPING kRegistryKeyMapping = {0x20019, 0x20006, 0x20019, 0xF003F};
constexpr GENERIC_MAPPING kPrinterMapping = {0x20008, 0x20008, 0x20008, 0xF000C};

constexpr DWORD kGenericRead = 0x80000000;
constexpr DWORD kGenericWrite = 0x40000000;
constexpr DWORD kGenericExecute = 0x20000000;
constexpr DWORD kGenericAll = 0x10000000;

}  // namespace

std::int32_t MapGenericMask(std::int32_t mask, const GENERIC_MAPPING& mapping) {
  auto rights = static_cast<DWORD>(mask);
  const auto map = [&](DWORD generic, DWORD specific) {
    if ((rights & generic) != 0) rights = (rights & ~generic) | specific;
  };
  map(kGenericRead, mapping.GenericRead);
  map(kGenericWrite, mapping.GenericWrite);
  map(kGenericExecute, mapping.GenericExecute);
  map(kGenericAll, mapping.GenericAll);
  return static_cast<std::int32_t>(rights);
}

const GENERIC_MAPPING& MappingOf(SE_OBJECT_TYPE object_type) {
  switch (object_type) {
    case SE_SERVICE:
      return kServiceMapping;
    case SE_PRINTER:
      return kPrinterMapping;
    case SE_REGISTRY_KEY:
      return kRegistryKeyMapping;
    default:
      return kFileMapping;
  }
}

const GENERIC_MAPPING& MappingOf(TextView object_type) {
  if (object_type == u"Service" || object_type == u"CService") return kServiceMapping;
  if (object_type == u"RegKey" || object_type == u"CRegKey") return kRegistryKeyMapping;
  if (object_type == u"Printer" || object_type == u"CPrinter") return kPrinterMapping;
  return kFileMapping;
}

}  // namespace veldmark
