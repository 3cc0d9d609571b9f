#include "support/Number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "support/TextNumbers.h"

namespace torv {
namespace {

template <class Float>
std::string shortestText(Float value) {
    if (!std::isfinite(value)) return "0";
    std::array<char, 64> room{};
    const auto [end, error] = std::to_chars(room.data(), room.data() + room.size(), value);
    return {room.data(), end};
}

/// The whole part of a number with a point or an exponent, digit by digit: by way of a double it would
/// lose what lies beyond 53 bits.
std::string wholePart(std::string_view text) {
    constexpr std::int64_t mostWholeDigits = 20;  // more than any 64-bit number has
    const auto mantissaEnd = std::min(text.find_first_of("eE"), text.size());
    std::int64_t exponent = mantissaEnd < text.size() ? intValue(text.substr(mantissaEnd + 1)) : 0;
    std::string digits;
    bool behindPoint = false;
    for (const char c : text.substr(0, mantissaEnd)) {
        if (c == '.') {
            behindPoint = true;
        } else if (c >= '0' && c <= '9') {
            digits += c;
            exponent -= behindPoint ? 1 : 0;
        }
    }
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    if (digits.empty()) return "0";
    const auto whole = static_cast<std::int64_t>(digits.size()) + exponent;
    if (whole <= 0) return "0";
    digits.resize(static_cast<std::size_t>(std::min(whole, mostWholeDigits)), '0');
    return text.front() == '-' ? '-' + digits : digits;
}

}  // namespace

Number Number::fromInteger(std::int64_t value) {
    return Number{std::to_string(value)};
}
Number Number::fromDouble(double value) {
    return Number{shortestText(value)};
}
Number Number::fromFloat(float value) {
    return Number{shortestText(value)};
}

std::int32_t Number::intValue() const {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(
        longLongValue(), std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

std::int64_t Number::longLongValue() const {
    const bool plain = m_text.find_first_of(".eE") == std::string::npos;
    return torv::longLongValue(plain ? m_text : wholePart(m_text));
}

float Number::floatValue() const {
    return torv::floatValue(m_text);
}
double Number::doubleValue() const {
    return torv::doubleValue(m_text);
}

}  // namespace torv
