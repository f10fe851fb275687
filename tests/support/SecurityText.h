#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

namespace veldmark {

// Renders what platforms hand out as security, so that tests compare it as a text. It reads by the
// published layout and shares no code with what it tests.
class SecurityText {
 public:
  // "O:BA D:PAI(0;03;1f01ff;SY)(5;10;1;<bf967aba>;WD)": the owner if there is one, then the list
  // with the type, the flags and the mask of each entry; "D:null" and "D:none" for those without.
  static std::string OfDescriptor(const void* descriptor) {
    const auto* const bytes = static_cast<const std::uint8_t*>(descriptor);
    const auto control = At<std::uint16_t>(bytes, 2);
    const auto owner = At<std::uint32_t>(bytes, 4);
    const auto list = At<std::uint32_t>(bytes, 16);
    std::string text = owner == 0 ? "" : "O:" + OfSid(bytes + owner) + " ";
    if ((control & 0x4) == 0) return text + "D:none";
    text += "D:";
    if ((control & 0x1000) != 0) text += "P";
    if ((control & 0x400) != 0) text += "AI";
    return text + (list == 0 ? "null" : OfList(bytes + list));
  }

  static std::string OfList(const std::uint8_t* list) {
    std::string text;
    const std::uint8_t* ace = list + 8;
    for (int index = 0; index < At<std::uint16_t>(list, 4); ++index) {
      text += OfAce(ace);
      ace += At<std::uint16_t>(ace, 2);
    }
    return text;
  }

  static std::string OfSid(const std::uint8_t* sid) {
    std::string text = "S-1-" + std::to_string(sid[7]);
    for (int index = 0; index < sid[1]; ++index) {
      text += "-" + std::to_string(At<std::uint32_t>(sid, 8 + 4 * index));
    }
    static const std::map<std::string, std::string> kNames = {
        {"S-1-1-0", "WD"}, {"S-1-3-0", "CO"},      {"S-1-5-11", "AU"},     {"S-1-5-18", "SY"},
        {"S-1-5-7", "AN"}, {"S-1-5-32-544", "BA"}, {"S-1-5-32-545", "BU"}, {"S-1-5-32-546", "BG"}};
    const auto name = kNames.find(text);
    return name == kNames.end() ? text : name->second;
  }

 private:
  template <typename T>
  static T At(const std::uint8_t* bytes, int offset) {
    T value;
    std::memcpy(&value, bytes + offset, sizeof value);
    return value;
  }

  static std::string Hex(const char* form, unsigned value) {
    char text[16];
    std::snprintf(text, sizeof text, form, value);
    return text;
  }

  static std::string OfAce(const std::uint8_t* ace) {
    std::string text = "(" + std::to_string(ace[0]) + ";" + Hex("%02x", ace[1]) + ";" +
                       Hex("%x", At<std::uint32_t>(ace, 4)) + ";";
    int offset = 8;
    if (ace[0] >= 5 && ace[0] <= 8) {
      const auto present = At<std::uint32_t>(ace, 8);
      offset = 12;
      for (const unsigned bit : {1u, 2u}) {
        if ((present & bit) == 0) continue;
        text += Hex(bit == 1 ? "<%08x>;" : "{%08x};", At<std::uint32_t>(ace, offset));
        offset += 16;
      }
    }
    return text + OfSid(ace + offset) + ")";
  }
};

}  // namespace veldmark
