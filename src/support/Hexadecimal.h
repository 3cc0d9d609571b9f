#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace torv {

// Bytes as hexadecimal digits, and back. Any thread.

/// Two lower-case digits a byte, nothing between them.
[[nodiscard]] std::string hexadecimalText(std::span<const std::uint8_t> bytes);
/// Either case; nothing for an odd number of digits or any other character.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> bytesFromHexadecimal(std::string_view text);
/// 0 to 15, or nothing.
[[nodiscard]] std::optional<std::uint8_t> hexadecimalDigit(char c);

}  // namespace torv
