#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

// The number that the name of a field is.
DWORD ReadNumber(const Node& field, std::string_view name, DWORD largest, const char* meaning) {
  const bool is_number = !name.empty() && name.size() <= 10 &&
                         name.find_first_not_of("0123456789") == std::string_view::npos;
  const unsigned long long number = is_number ? std::stoull(std::string(name)) : 0;
  if (!is_number || number > largest) {
    field.Complain(std::string("the field's name must be a ") + meaning);
  }
  return static_cast<DWORD>(number);
}

}  // namespace

Ticks ReadTime(const Node& node) {
  const std::string text = node.Utf8();
  static constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd";
  bool matches = text.size() > kForm.size() && text.back() == 'Z';
  for (std::size_t index = 0; matches && index < kForm.size(); ++index) {
    const bool is_digit = text[index] >= '0' && text[index] <= '9';
    matches = kForm[index] == 'd' ? is_digit : text[index] == kForm[index];
  }
  Ticks fraction = 0;
  const std::size_t digits = matches ? text.size() - kForm.size() - 1 : 0;
  if (digits > 0) {
    matches = text[kForm.size()] == '.' && digits >= 2 && digits <= 8;
    Ticks unit = kTicksPerSecond / 10;
    for (std::size_t index = 1; matches && index < digits; ++index, unit /= 10) {
      const char digit = text[kForm.size() + index];
      matches = digit >= '0' && digit <= '9';
      if (matches) fraction += unit * static_cast<Ticks>(digit - '0');
    }
  }
  if (!matches) node.Complain("must be a UTC time such as 2024-03-05T14:30:00Z");
  const auto number = [&](std::size_t start, std::size_t count) {
    return static_cast<WORD>(std::stoi(text.substr(start, count)));
  };
  const SYSTEMTIME time{.wYear = number(0, 4),
                        .wMonth = number(5, 2),
                        .wDayOfWeek = 0,
                        .wDay = number(8, 2),
                        .wHour = number(11, 2),
                        .wMinute = number(14, 2),
                        .wSecond = number(17, 2),
                        .wMilliseconds = 0};
  const auto ticks = ToTicks(time);
  if (!ticks) node.Complain("there is no such time");
  return *ticks + fraction;
}

DWORD ReadSeconds(const Node& node) {
  constexpr Ticks kNever = 0xFFFFFFFF;
  const Ticks time = ReadTime(node);
  if (time < kUnixStart || (time - kUnixStart) / kTicksPerSecond >= kNever) {
    node.Complain("must be a time from 1970 to 2106");
  }
  return UnixTimeOf(time);
}

std::vector<std::uint8_t> ReadHex(const Node& node) {
  std::vector<std::uint8_t> bytes;
  int high = -1;
  for (const char digit : node.Utf8()) {
    if (digit == ' ') continue;
    int value = -1;
    if (digit >= '0' && digit <= '9') value = digit - '0';
    if (digit >= 'a' && digit <= 'f') value = digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') value = digit - 'A' + 10;
    if (value < 0) node.Complain("must be hexadecimal digits");
    if (high < 0) {
      high = value;
    } else {
      bytes.push_back(static_cast<std::uint8_t>(high * 16 + value));
      high = -1;
    }
  }
  if (high >= 0) node.Complain("must be an even number of hexadecimal digits");
  return bytes;
}

MessageTable ReadMessages(const Node& node) {
  MessageTable messages;
  for (const auto& [name, text] : node.Members()) {
    messages[ReadNumber(text, name, std::numeric_limits<DWORD>::max(), "message number")] =
        text.String();
  }
  return messages;
}

WORD ReadLanguage(const Node& field, std::string_view name) {
  return static_cast<WORD>(
      ReadNumber(field, name, std::numeric_limits<WORD>::max(), "language number"));
}

char16_t ReadDriveLetter(const Node& node, std::string_view name) {
  const bool is_drive = name.size() == 2 && name[1] == ':' &&
                        ((name[0] >= 'A' && name[0] <= 'Z') || (name[0] >= 'a' && name[0] <= 'z'));
  if (!is_drive) node.Complain("the field's name must be a drive such as C:");
  return static_cast<char16_t>(name[0]);
}

SecurityDescriptor ReadSecurity(const Node& node, const Estate& estate) {
  const Text text = node.String();
  return node.Try([&] { return DescriptorOf(text, estate.domain()); });
}

Sid ReadSid(const Node& node) {
  const auto sid = Sid::FromText(node.String());
  if (!sid) node.Complain("is no SID");
  return *sid;
}

}  // namespace veldmark::simulated
