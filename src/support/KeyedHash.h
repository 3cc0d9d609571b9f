#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace torv {

/// SipHash-2-4 (Aumasson and Bernstein, 2012): whoever does not know the key can't make texts whose hashes
/// collide. Any thread.
[[nodiscard]] std::uint64_t keyedHash(std::string_view text, const std::array<std::uint64_t, 2>& key);

/// The same under a random key of this process: for tables of keys that come from outside.
[[nodiscard]] std::uint64_t keyedHash(std::string_view text);

}  // namespace torv
