#include "JSON/SBJsonParser.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "support/Utf8.h"

namespace torv {
namespace {

constexpr std::array<bool, 256> bytesOf(std::string_view characters) {
    std::array<bool, 256> set{};
    for (const char c : characters)
        set[static_cast<unsigned char>(c)] = true;
    return set;
}

constexpr auto isSpace = bytesOf(" \t\n\v\f\r");

// A plain run inside a string ends at these. A zero byte ends the input there.
constexpr auto endsRun = [] {
    auto set = bytesOf("\"\\");
    std::fill_n(set.begin(), 0x20, true);
    return set;
}();

constexpr std::string_view escapeLetters = "\"\\/bfnrt";
constexpr std::string_view escapeMeanings = "\"\\/\b\f\n\r\t";

constexpr unsigned char byteAt(const char* place) {
    return static_cast<unsigned char>(*place);
}
constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool isHigh(char c) {
    return (static_cast<unsigned char>(c) & 0x80U) != 0;
}
constexpr bool isSurrogate(std::uint32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

std::string hex(char c) {
    std::array<char, 2> digits{};
    const auto [end, error] = std::to_chars(digits.begin(), digits.end(), static_cast<unsigned char>(c), 16);
    return {digits.begin(), end};
}

void appendUtf8(std::string& text, std::uint32_t unit) {
    const auto put = [&](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (unit < 0x80) {
        put(unit);
    } else if (unit < 0x800) {
        put(0xC0U | unit >> 6U);
        put(0x80U | (unit & 0x3FU));
    } else {
        put(0xE0U | unit >> 12U);
        put(0x80U | (unit >> 6U & 0x3FU));
        put(0x80U | (unit & 0x3FU));
    }
}

}  // namespace

std::optional<Value> SBJsonParser::objectWithString(std::optional<std::string_view> text) {
    auto value = fragmentWithString(text);
    if (value && !value->array() && !value->dictionary()) {
        fail(json_fault::fragmentOnly);
        value.reset();
    }
    return value;
}

std::optional<Value> SBJsonParser::fragmentWithString(std::optional<std::string_view> text) {
    start();
    if (!text) {
        fail(json_fault::noInput);
        return std::nullopt;
    }
    m_begin = m_at = text->data();
    m_end = m_at + text->size();
    std::optional<Value> value{std::in_place};
    if (!scanValue(*value)) return std::nullopt;
    skipWhitespace();
    if (!atEnd()) {
        fail(json_fault::garbageBehind);
        return std::nullopt;
    }
    return value;
}

bool SBJsonParser::scanValue(Value& value) {
    skipWhitespace();
    if (atEnd()) return fail(json_fault::endOfInput);
    switch (*m_at) {
        case '"':
            return scanText(value);
        case '[':
            return scanArray(value);
        case '{':
            return scanObject(value);
        case 't':
            value = true;
            return scanLiteral("true", json_fault::expectedTrue);
        case 'f':
            value = false;
            return scanLiteral("false", json_fault::expectedFalse);
        case 'n':
            return scanLiteral("null", json_fault::expectedNull);
        case '+':
            return fail(json_fault::leadingPlus);
        default:
            if (*m_at == '-' || isDigit(*m_at)) return scanNumber(value);
            return fail(json_fault::unrecognisedCharacter);
    }
}

bool SBJsonParser::scanArray(Value& value) {
    if (!enter()) return false;
    ++m_at;
    Array elements;
    while (!atEnd()) {
        skipWhitespace();
        if (pass(']')) {
            leave();
            value = std::move(elements);
            return true;
        }
        if (!scanValue(elements.emplace_back())) return fail(json_fault::expectedValueInArray);
        skipWhitespace();
        if (!pass(',')) continue;
        skipWhitespace();
        if (pass(']')) return fail(json_fault::trailingCommaInArray);
    }
    return fail(json_fault::endInArray);
}

bool SBJsonParser::scanObject(Value& value) {
    if (!enter()) return false;
    ++m_at;
    Dictionary members;
    while (!atEnd()) {
        skipWhitespace();
        if (pass('}')) {
            leave();
            value = std::move(members);
            return true;
        }
        if (!scanMember(members)) return false;
        skipWhitespace();
        if (!pass(',')) continue;
        skipWhitespace();
        if (pass('}')) return fail(json_fault::trailingCommaInObject);
    }
    return fail(json_fault::endInObject);
}

bool SBJsonParser::scanMember(Dictionary& members) {
    std::string key;
    if (atEnd() || *m_at != '"' || !scanString(key)) return fail(json_fault::expectedKey);
    skipWhitespace();
    if (!pass(':')) return fail(json_fault::expectedColon);
    Value value;
    if (!scanValue(value)) return fail(json_fault::expectedValueForKey, key);
    members.set(std::move(key), std::move(value));
    return true;
}

bool SBJsonParser::scanText(Value& value) {
    std::string text;
    if (!scanString(text)) return false;
    value = std::move(text);
    return true;
}

bool SBJsonParser::scanString(std::string& text) {
    ++m_at;
    while (true) {
        const char* const run = m_at;
        const char* end = run;
        unsigned char seen = 0;
        while (end != m_end && !endsRun[byteAt(end)])
            seen |= byteAt(end++);
        if ((seen & 0x80U) != 0 && !isUtf8({run, end})) {
            return fail(json_fault::controlCharacter, hex(*std::find_if(run, end, isHigh)));
        }
        text.append(run, end);
        m_at = end;
        if (pass('"')) return true;
        if (atEnd() || *m_at == '\0') return fail(json_fault::endInString);
        if (!pass('\\')) return fail(json_fault::controlCharacter, hex(*m_at));
        if (!scanEscape(text)) return false;
    }
}

bool SBJsonParser::scanEscape(std::string& text) {
    if (atEnd() || *m_at == '\0') return fail(json_fault::endInString);
    if (pass('u')) return scanUnicode(text) || fail(json_fault::brokenUnicode);
    const auto row = escapeLetters.find(*m_at);
    if (row == std::string_view::npos) return fail(json_fault::illegalEscape, hex(*m_at));
    text.push_back(escapeMeanings[row]);
    ++m_at;
    return true;
}

bool SBJsonParser::scanUnicode(std::string& text) {
    constexpr std::uint32_t firstLow = 0xDC00;
    constexpr std::uint32_t lastLow = 0xDFFE;  // DFFF is refused; kept as it is
    constexpr std::uint32_t replacement = 0xFFFD;
    std::uint32_t unit = 0;
    if (!scanHexQuad(unit)) return fail(json_fault::missingHexQuad);
    if (isSurrogate(unit)) {
        if (unit >= firstLow) return fail(json_fault::invalidHighSurrogate);
        std::uint32_t low = 0;
        if (!pass('\\') || !pass('u') || !scanHexQuad(low)) return fail(json_fault::missingLowSurrogate);
        if (low < firstLow || low > lastLow) return fail(json_fault::invalidLowSurrogate);
        // The pair is kept in 16 bits, so the plane is lost. What is left may itself be half a pair,
        // which UTF-8 cannot hold: the replacement character stands for it.
        unit = ((unit & 0x3FFU) << 10U | (low & 0x3FFU)) & 0xFFFFU;
        if (isSurrogate(unit)) unit = replacement;
    }
    appendUtf8(text, unit);
    return true;
}

bool SBJsonParser::scanHexQuad(std::uint32_t& unit) {
    constexpr std::ptrdiff_t quad = 4;
    const char* const end = m_at + std::min(quad, m_end - m_at);
    const auto [stop, error] = std::from_chars(m_at, end, unit, 16);
    if (stop - m_at != quad) return fail(json_fault::missingHexDigit);
    m_at = stop;
    return true;
}

bool SBJsonParser::scanNumber(Value& value) {
    const char* const first = m_at;
    pass('-');
    if (pass('0')) {
        if (!atEnd() && isDigit(*m_at)) return fail(json_fault::leadingZero);
    } else if (!skipDigits()) {
        return fail(json_fault::noDigitsAfterMinus);
    }
    if (pass('.') && !skipDigits()) return fail(json_fault::noDigitsAfterPoint);
    if (pass('e') || pass('E')) {
        if (!pass('+')) pass('-');
        if (!skipDigits()) return fail(json_fault::noDigitsAfterExponent);
    }
    value = Number{std::string{first, m_at}};
    return true;
}

bool SBJsonParser::scanLiteral(std::string_view literal, const JSONFault& fault) {
    if (!std::string_view{m_at, m_end}.starts_with(literal)) return fail(fault);
    m_at += literal.size();
    return true;
}

void SBJsonParser::skipWhitespace() {
    const char* at = m_at;
    while (at != m_end && isSpace[byteAt(at)])
        ++at;
    m_at = at;
}

bool SBJsonParser::skipDigits() {
    const char* const first = m_at;
    m_at = std::find_if_not(first, m_end, isDigit);
    return m_at != first;
}

bool SBJsonParser::pass(char c) {
    if (atEnd() || *m_at != c) return false;
    ++m_at;
    return true;
}

}  // namespace torv
