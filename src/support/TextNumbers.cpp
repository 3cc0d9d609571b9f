#include "support/TextNumbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace torv {
namespace {

constexpr std::int64_t mostDigits = 149;

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view withoutLeadingSpace(std::string_view text) {
    const auto* begin = std::find_if_not(text.begin(), text.end(), isSpace);
    return text.substr(static_cast<std::size_t>(begin - text.begin()));
}

/// std::from_chars takes a minus but no plus, and reads "inf" and "nan", which are no numbers here.
std::string_view numberStart(std::string_view text) {
    text = withoutLeadingSpace(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return {};
    }
    const auto rest = !text.empty() && text.front() == '-' ? text.substr(1) : text;
    const bool digits =
        !rest.empty() && (isDigit(rest[0]) || (rest[0] == '.' && rest.size() > 1 && isDigit(rest[1])));
    return digits ? text : std::string_view{};
}

template <class Integer>
Integer readInteger(std::string_view text) {
    text = numberStart(text);
    Integer value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        return text.front() == '-' ? std::numeric_limits<Integer>::min()
                                   : std::numeric_limits<Integer>::max();
    }
    return value;
}

/// Tells an overflow from an underflow, for which std::from_chars gives the same error: by the decimal
/// exponent of the first digit that is not 0.
bool isLarge(std::string_view digits) {
    const auto mantissaEnd = std::min(digits.find_first_of("eE"), digits.size());
    const auto mantissa = digits.substr(0, mantissaEnd);
    const auto point = std::min(mantissa.find('.'), mantissa.size());
    const auto first = mantissa.find_first_of("123456789");
    if (first == std::string_view::npos) return false;
    auto exponent = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    if (mantissaEnd < digits.size()) exponent += intValue(digits.substr(mantissaEnd + 1));
    return exponent > 0;
}

template <class Float>
Float readFloat(std::string_view text) {
    text = numberStart(text);
    Float value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        const bool negative = text.front() == '-';
        const Float size =
            isLarge(negative ? text.substr(1) : text) ? std::numeric_limits<Float>::infinity() : Float{0};
        return negative ? -size : size;
    }
    return value;
}

template <class Float>
std::optional<Float> readWhole(std::string_view text) {
    text = numberStart(text);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    if (text.empty()) return std::nullopt;
    Float value = 0;
    const auto* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, value);
    if (end != textEnd) return std::nullopt;
    return error == std::errc{} ? value : readFloat<Float>(text);
}

template <class Integer>
Integer saturated(double value) {
    using Limits = std::numeric_limits<Integer>;
    if (std::isnan(value)) return 0;
    if (value >= -static_cast<double>(Limits::min())) return Limits::max();
    if (value <= static_cast<double>(Limits::min())) return Limits::min();
    return static_cast<Integer>(value);
}

}  // namespace

std::int32_t intValue(std::string_view text) {
    return readInteger<std::int32_t>(text);
}
std::int64_t longLongValue(std::string_view text) {
    return readInteger<std::int64_t>(text);
}
float floatValue(std::string_view text) {
    return readFloat<float>(text);
}
double doubleValue(std::string_view text) {
    return readFloat<double>(text);
}

std::optional<float> wholeTextFloatValue(std::string_view text) {
    return readWhole<float>(text);
}
std::optional<double> wholeTextDoubleValue(std::string_view text) {
    return readWhole<double>(text);
}

bool boolValue(std::string_view text) {
    text = withoutLeadingSpace(text);
    if (text.empty()) return false;
    if (std::string_view{"YyTt"}.find(text.front()) != std::string_view::npos) return true;
    if (text.front() == '+' || text.front() == '-') text.remove_prefix(1);
    const auto first = text.find_first_not_of('0');
    return first != std::string_view::npos && isDigit(text[first]);
}

std::int32_t intFromFloat(double value) {
    return saturated<std::int32_t>(value);
}
std::int64_t longLongFromDouble(double value) {
    return saturated<std::int64_t>(value);
}

std::string fixedText(double value, std::int64_t digits) {
    if (std::isnan(value)) return "nan";
    const auto precision = static_cast<int>(std::clamp<std::int64_t>(digits, 0, mostDigits));
    std::array<char, 512> room{};  // 309 digits before the point, 149 behind it, sign and point
    const auto [end, error] =
        std::to_chars(room.data(), room.data() + room.size(), value, std::chars_format::fixed, precision);
    return {room.data(), end};
}

std::string paddedText(std::int64_t value, std::size_t width, char fill) {
    const bool zeros = fill == '0';
    auto text = std::to_string(value);
    if (text.size() >= width) return text;
    const auto place = zeros && text.front() == '-' ? std::size_t{1} : std::size_t{0};
    text.insert(place, width - text.size(), fill);
    return text;
}

std::string hoursMinutesSeconds(std::int32_t seconds) {
    return paddedText(seconds / 3600, 4, ' ') + ':' + paddedText(seconds / 60 % 60, 2, '0') + ':' +
           paddedText(seconds % 60, 2, '0');
}

std::string sixtiethsText(std::int32_t value) {
    return paddedText(value / 60, 4, ' ') + ':' + paddedText(value % 60, 2, '0');
}

}  // namespace torv
