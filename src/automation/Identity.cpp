#include "automation/Identity.h"

#include <bit>
#include <cstdio>
#include <span>
#include <vector>

namespace veldmark {
namespace {

/// The library's own identifier, the name space of all the others:
/// 6F0D3B52-9C1E-4E7A-8B64-21D7A5C0E913.
constexpr std::uint8_t kNameSpace[] = {0x6F, 0x0D, 0x3B, 0x52, 0x9C, 0x1E, 0x4E, 0x7A,
                                       0x8B, 0x64, 0x21, 0xD7, 0xA5, 0xC0, 0xE9, 0x13};

std::array<std::uint8_t, 20> Sha1(std::vector<std::uint8_t> message) {
  const std::uint64_t bits = message.size() * 8u;
  message.push_back(0x80);
  while (message.size() % 64 != 56) message.push_back(0);
  for (int shift = 56; shift >= 0; shift -= 8)
    message.push_back(static_cast<std::uint8_t>(bits >> shift));

  std::uint32_t hash[5] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  for (std::size_t block = 0; block < message.size(); block += 64) {
    std::uint32_t word[80];
    for (std::size_t i = 0; i < 16; ++i) {
      const std::uint8_t* byte = &message[block + 4 * i];
      word[i] = std::uint32_t{byte[0]} << 24 | std::uint32_t{byte[1]} << 16 |
                std::uint32_t{byte[2]} << 8 | byte[3];
    }
    for (std::size_t i = 16; i < 80; ++i) {
      word[i] = std::rotl(word[i - 3] ^ word[i - 8] ^ word[i - 14] ^ word[i - 16], 1);
    }
    std::uint32_t a = hash[0], b = hash[1], c = hash[2], d = hash[3], e = hash[4];
    for (std::size_t i = 0; i < 80; ++i) {
      const std::uint32_t mix = i < 20   ? ((b & c) | (~b & d)) + 0x5A827999
                                : i < 40 ? (b ^ c ^ d) + 0x6ED9EBA1
                                : i < 60 ? ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC
                                         : (b ^ c ^ d) + 0xCA62C1D6;
      const std::uint32_t next = std::rotl(a, 5) + mix + e + word[i];
      e = d;
      d = c;
      c = std::rotl(b, 30);
      b = a;
      a = next;
    }
    hash[0] += a, hash[1] += b, hash[2] += c, hash[3] += d, hash[4] += e;
  }

  std::array<std::uint8_t, 20> digest;
  for (std::size_t i = 0; i < digest.size(); ++i) {
    digest[i] = static_cast<std::uint8_t>(hash[i / 4] >> (24 - 8 * (i % 4)));
  }
  return digest;
}

}  // namespace

std::string Identity::ToString() const {
  char text[37];
  std::snprintf(text, sizeof text, "%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X", data1, data2,
                data3, data4[0], data4[1], data4[2], data4[3], data4[4], data4[5], data4[6],
                data4[7]);
  return text;
}

Identity IdentityOf(std::string_view name) {
  std::vector<std::uint8_t> message(std::begin(kNameSpace), std::end(kNameSpace));
  message.insert(message.end(), name.begin(), name.end());
  auto digest = Sha1(std::move(message));
  digest[6] = static_cast<std::uint8_t>((digest[6] & 0x0F) | 0x50);
  digest[8] = static_cast<std::uint8_t>((digest[8] & 0x3F) | 0x80);

  Identity identity;
  identity.data1 = std::uint32_t{digest[0]} << 24 | std::uint32_t{digest[1]} << 16 |
                   std::uint32_t{digest[2]} << 8 | digest[3];
  identity.data2 = static_cast<std::uint16_t>(digest[4] << 8 | digest[5]);
  identity.data3 = static_cast<std::uint16_t>(digest[6] << 8 | digest[7]);
  for (std::size_t i = 0; i < 8; ++i) identity.data4[i] = digest[8 + i];
  return identity;
}

}  // namespace veldmark
