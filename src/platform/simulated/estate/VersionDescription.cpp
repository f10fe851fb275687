#include "platform/simulated/estate/VersionDescription.h"

#include <charconv>
#include <stdexcept>

#include "platform/operations/VersionInformation.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kMostBytes = 0xFFFF;

// A resource in the making: blocks within blocks, each with its length, the length of its value,
// its type and its key, then value and children, all at multiples of four bytes.
class Builder {
 public:
  std::vector<std::uint8_t> Take() { return std::move(bytes_); }

  template <class Children>
  void Block(TextView key, const std::vector<std::uint8_t>& value, Children&& children) {
    Add(key, value, value.size(), false, children);
  }

  void String(TextView name, TextView text) {
    std::vector<std::uint8_t> units;
    for (const char16_t unit : text) AddWord(units, unit);
    AddWord(units, 0);
    // An empty text has no value at all.
    Add(name, units, text.empty() ? 0 : text.size() + 1, true, [] {});
  }

  static void AddWord(std::vector<std::uint8_t>& bytes, std::size_t word) {
    bytes.push_back(static_cast<std::uint8_t>(word));
    bytes.push_back(static_cast<std::uint8_t>(word >> 8));
  }

  static void AddDword(std::vector<std::uint8_t>& bytes, std::uint32_t dword) {
    AddWord(bytes, dword);
    AddWord(bytes, dword >> 16);
  }

 private:
  template <class Children>
  void Add(TextView key, const std::vector<std::uint8_t>& value, std::size_t value_length,
           bool is_text, Children&& children) {
    Align();
    const std::size_t start = bytes_.size();
    AddWord(bytes_, 0);
    AddWord(bytes_, value_length);
    AddWord(bytes_, is_text ? 1 : 0);
    for (const char16_t unit : key) AddWord(bytes_, unit);
    AddWord(bytes_, 0);
    if (value_length > 0) {
      Align();
      bytes_.insert(bytes_.end(), value.begin(), value.end());
    }
    children();
    const std::size_t length = bytes_.size() - start;
    if (bytes_.size() > kMostBytes) throw std::invalid_argument("is more than a resource can hold");
    bytes_[start] = static_cast<std::uint8_t>(length);
    bytes_[start + 1] = static_cast<std::uint8_t>(length >> 8);
  }

  void Align() { bytes_.resize((bytes_.size() + 3) & ~std::size_t{3}); }

  std::vector<std::uint8_t> bytes_;
};

void AddNumber(std::vector<std::uint8_t>& bytes, const VersionDescription::Number& number) {
  for (const std::size_t half : {0, 2}) {
    Builder::AddWord(bytes, number[half + 1]);
    Builder::AddWord(bytes, number[half]);
  }
}

std::vector<std::uint8_t> FixedInfo(const VersionDescription& description) {
  constexpr std::uint32_t kStructureVersion = 0x00010000;
  constexpr std::uint32_t kAllFlags = 0x3F;
  constexpr std::uint32_t kForWindowsNt = 0x00040004;
  constexpr std::uint32_t kDynamicLibrary = 2;
  std::vector<std::uint8_t> bytes;
  Builder::AddDword(bytes, kFixedFileInfoSignature);
  Builder::AddDword(bytes, kStructureVersion);
  AddNumber(bytes, description.file);
  AddNumber(bytes, description.product);
  for (const std::uint32_t rest : {kAllFlags, 0u, kForWindowsNt, kDynamicLibrary, 0u, 0u, 0u}) {
    Builder::AddDword(bytes, rest);
  }
  return bytes;
}

std::uint32_t ParseTranslation(const Text& text) {
  const std::string digits = ToUtf8(text);
  const char* const end = digits.data() + digits.size();
  std::uint32_t value = 0;
  const auto parsed = std::from_chars(digits.data(), end, value, 16);
  if (digits.size() != 8 || parsed.ec != std::errc() || parsed.ptr != end) {
    throw std::invalid_argument("must be eight hexadecimal digits: language and code page");
  }
  return value;
}

}  // namespace

VersionDescription::Number VersionDescription::ParseNumber(std::string_view text) {
  Number number{};
  const char* position = text.data();
  const char* const end = text.data() + text.size();
  for (std::uint16_t& part : number) {
    const auto parsed = std::from_chars(position, end, part);
    if (parsed.ec != std::errc()) break;
    position = parsed.ptr;
    if (position == end) return number;
    if (*position++ != '.') break;
  }
  throw std::invalid_argument("must be a version such as 5.1.2600.0");
}

std::vector<std::uint8_t> VersionDescription::Build() const {
  Builder builder;
  builder.Block(u"VS_VERSION_INFO", FixedInfo(*this), [&] {
    if (!strings.empty()) {
      builder.Block(u"StringFileInfo", {}, [&] {
        for (const auto& table : strings) {
          ParseTranslation(table.first);
          builder.Block(table.first, {}, [&] {
            for (const auto& [name, text] : table.second) builder.String(name, text);
          });
        }
      });
    }
    if (translations.empty()) return;
    std::vector<std::uint8_t> list;
    for (const Text& translation : translations) {
      const std::uint32_t value = ParseTranslation(translation);
      Builder::AddWord(list, value >> 16);
      Builder::AddWord(list, value);
    }
    builder.Block(u"VarFileInfo", {}, [&] { builder.Block(u"Translation", list, [] {}); });
  });
  return builder.Take();
}

}  // namespace veldmark::simulated
