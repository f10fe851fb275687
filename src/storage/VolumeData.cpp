#include "storage/VolumeData.h"

#include <array>

#include "automation/Error.h"
#include "storage/PlatformFiles.h"

namespace veldmark {

VolumeData ReadVolumeData(const Text& root) {
  constexpr std::size_t kNameLength = 260;
  std::array<WCHAR, kNameLength + 1> name{};
  std::array<WCHAR, kNameLength + 1> file_system{};
  DWORD serial = 0;
  DWORD maximum_component_length = 0;
  DWORD flags = 0;
  if (!Files().GetVolumeInformationW(root.c_str(), name.data(), kNameLength, &serial,
                                     &maximum_component_length, &flags, file_system.data(),
                                     kNameLength)) {
    return {};
  }
  return {.is_ready = true,
          .name = name.data(),
          .file_system = file_system.data(),
          .serial_number = static_cast<std::int32_t>(serial),
          .maximum_component_length = static_cast<std::int32_t>(maximum_component_length),
          .flags = static_cast<std::int32_t>(flags)};
}

Text SerialNumberText(std::int32_t serial_number) {
  if (serial_number == 0) return {};
  constexpr TextView kDigits = u"0123456789ABCDEF";
  Text text;
  for (int shift = 28; shift >= 0; shift -= 4) {
    text += kDigits[static_cast<std::uint32_t>(serial_number) >> shift & 0xF];
  }
  return text.insert(4, 1, u'-');
}

Variant SizeValue(std::uint64_t bytes) {
  constexpr std::int64_t kLimit = INT64_MAX / Currency::kScale;
  const auto count = static_cast<std::int64_t>(bytes);
  if (count > kLimit || count < -kLimit) Raise(runtime_error::kOverflow);
  return Variant(Currency{count * Currency::kScale});
}

}  // namespace veldmark
