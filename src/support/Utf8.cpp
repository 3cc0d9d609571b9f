#include "support/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "support/Hexadecimal.h"

namespace torv {
namespace {

/// How sequences of each length look: the bits of the first byte that tell, and the lowest character that
/// needs this length.
struct Form {
    std::uint8_t mask;
    std::uint8_t mark;
    std::size_t length;
    std::uint32_t lowest;
};
constexpr std::array<Form, 4> forms{{
    {0x80, 0x00, 1, 0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
}};

struct Character {
    std::uint32_t code;
    std::size_t length;
};

/// The character at the start of the text, which is not empty.
std::optional<Character> firstCharacter(std::string_view text) {
    const auto first = static_cast<std::uint8_t>(text.front());
    const auto* form =
        std::find_if(forms.begin(), forms.end(), [&](const Form& f) { return (first & f.mask) == f.mark; });
    if (form == forms.end() || text.size() < form->length) return std::nullopt;
    std::uint32_t code = first & static_cast<std::uint8_t>(~form->mask);
    if (form->length == 1) code = first;
    for (std::size_t i = 1; i < form->length; ++i) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if ((byte & 0xC0U) != 0x80) return std::nullopt;
        code = code << 6U | (byte & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < form->lowest || code > 0x10FFFF || surrogate) return std::nullopt;
    return Character{code, form->length};
}

/// Lower-case letters that stand a fixed distance behind their upper-case ones, all below U+0800.
struct Letters {
    std::uint32_t first, last, distance;
};
constexpr std::array<Letters, 7> alphabets{{
    {'a', 'z', 32},
    {0xE0, 0xF6, 32},
    {0xF8, 0xFE, 32},
    {0x3B1, 0x3C1, 32},
    {0x3C3, 0x3C9, 32},
    {0x430, 0x44F, 32},
    {0x450, 0x45F, 80},
}};

std::uint32_t withCase(std::uint32_t code, bool upper) {
    for (const auto& [first, last, distance] : alphabets) {
        if (upper && code >= first && code <= last) return code - distance;
        if (!upper && code + distance >= first && code + distance <= last && code < first)
            return code + distance;
    }
    return code;
}

}  // namespace

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        if ((static_cast<std::uint8_t>(text.front()) & 0x80U) == 0) {
            text.remove_prefix(1);
            continue;
        }
        const auto character = firstCharacter(text);
        if (!character) return false;
        text.remove_prefix(character->length);
    }
    return true;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        if (i + 2 >= text.size()) return std::nullopt;
        const auto high = hexadecimalDigit(text[i + 1]);
        const auto low = hexadecimalDigit(text[i + 2]);
        if (!high || !low) return std::nullopt;
        result += static_cast<char>(*high << 4U | *low);
        i += 2;
    }
    if (!isUtf8(result)) return std::nullopt;
    return result;
}

std::string capitalizeFirstLetterUpper(std::string_view text, bool upper) {
    std::string result{text};
    const auto character = text.empty() ? std::nullopt : firstCharacter(text);
    if (!character || character->length > 2) return result;
    const auto code = withCase(character->code, upper);
    if (code < 0x80) {
        result.front() = static_cast<char>(code);
    } else {
        result[0] = static_cast<char>(0xC0U | code >> 6U);
        result[1] = static_cast<char>(0x80U | (code & 0x3FU));
    }
    return result;
}

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

}  // namespace torv
