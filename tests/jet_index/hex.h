// Bytes as readable text and back: "7F 80 00".
#pragma once

#include <cstddef>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::jet {

inline std::string HexFromBytes(std::span<const std::byte> bytes) {
  std::string hex;
  for (const std::byte byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof(digits), "%02X", std::to_integer<unsigned>(byte));
    if (!hex.empty()) hex += ' ';
    hex += digits;
  }
  return hex;
}

inline std::vector<std::byte> BytesFromHex(std::string_view hex) {
  std::vector<std::byte> bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 3) {
    bytes.push_back(static_cast<std::byte>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16)));
  }
  return bytes;
}

}  // namespace zimbrat::jet
