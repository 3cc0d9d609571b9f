#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace torv {

// Texts in UTF-8. Any thread.

/// Well-formed as the Unicode standard has it: no overlong forms, no surrogates, nothing past U+10FFFF.
[[nodiscard]] bool isUtf8(std::string_view text);

/// Percent escapes (RFC 3986) resolved; nothing when a percent sign opens no escape or the result is not
/// UTF-8.
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

/// The first letter upper-cased or lower-cased, the rest as it was. Letters of the Latin (with Latin-1),
/// Greek and Cyrillic alphabets, whatever the locale.
[[nodiscard]] std::string capitalizeFirstLetterUpper(std::string_view text, bool upper);

/// What follows the byte order mark, where there is one: some editors put it before a document.
[[nodiscard]] std::string_view withoutByteOrderMark(std::string_view text);

}  // namespace torv
