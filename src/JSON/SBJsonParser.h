#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "JSON/SBJsonBase.h"
#include "support/Value.h"

namespace torv {

/// Reads JSON text (UTF-8) into values. One object is not for two threads at once.
///
/// Two oddities, kept as they are: a comma between elements or members may be missing, and a character beyond
/// the basic plane that is written as a pair of \u escapes loses its plane. Written as plain UTF-8 it stays
/// whole.
class SBJsonParser final : public SBJsonBase {
public:
    /// A dictionary or a list; nothing on error.
    [[nodiscard]] std::optional<Value> objectWithString(std::optional<std::string_view> text);
    /// Any value; nothing on error.
    [[nodiscard]] std::optional<Value> fragmentWithString(std::optional<std::string_view> text);

    /// Where reading stopped, in bytes from the start of the text: the place of the first error.
    [[nodiscard]] std::size_t errorOffset() const { return static_cast<std::size_t>(m_at - m_begin); }

private:
    bool scanValue(Value& value);
    bool scanArray(Value& value);
    bool scanObject(Value& value);
    bool scanMember(Dictionary& members);
    bool scanText(Value& value);
    bool scanString(std::string& text);
    bool scanEscape(std::string& text);
    bool scanUnicode(std::string& text);
    bool scanHexQuad(std::uint32_t& unit);
    bool scanNumber(Value& value);
    bool scanLiteral(std::string_view literal, const JSONFault& fault);

    void skipWhitespace();
    bool skipDigits();
    bool pass(char c);
    [[nodiscard]] bool atEnd() const { return m_at == m_end; }

    const char* m_begin = nullptr;
    const char* m_at = nullptr;
    const char* m_end = nullptr;
};

}  // namespace torv
