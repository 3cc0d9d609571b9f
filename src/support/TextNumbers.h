// Numbers in texts, the same under every locale.
//
// Reading takes the leading number of a text, passing over leading white space; a text that does not
// begin with a number reads as 0. Whole numbers saturate at the limits of their type. Neither "inf" nor
// "nan" nor a hexadecimal form is a number here. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace torv {

[[nodiscard]] std::int32_t intValue(std::string_view text);
[[nodiscard]] std::int64_t longLongValue(std::string_view text);
[[nodiscard]] float floatValue(std::string_view text);
[[nodiscard]] double doubleValue(std::string_view text);

/// The whole text as a number, blanks around it passed over; nothing when anything else stands in it.
[[nodiscard]] std::optional<float> wholeTextFloatValue(std::string_view text);
[[nodiscard]] std::optional<double> wholeTextDoubleValue(std::string_view text);

/// True for a text that begins with Y, y, T, t or, behind a sign and zeros, with a digit from 1 to 9.
[[nodiscard]] bool boolValue(std::string_view text);

/// Cuts toward zero and saturates; not a number gives 0.
[[nodiscard]] std::int32_t intFromFloat(double value);
[[nodiscard]] std::int64_t longLongFromDouble(double value);

/// The value in fixed-point form, rounded to nearest on its exact binary value. `digits` below 0 counts
/// as 0. No more than 149 digits are written: a float has only zeros behind them, and the number of digits
/// comes from documents that nobody has checked.
[[nodiscard]] std::string fixedText(double value, std::int64_t digits);

/// A whole number padded on the left to `width`: with blanks, as "%4ld", or with zeros, as "%02ld".
[[nodiscard]] std::string paddedText(std::int64_t value, std::size_t width, char fill);

/// A count of smaller units as "%4d:%02d:%02d" (hours, minutes, seconds) or "%4d:%02d" (value / 60, rest).
[[nodiscard]] std::string hoursMinutesSeconds(std::int32_t seconds);
[[nodiscard]] std::string sixtiethsText(std::int32_t value);

}  // namespace torv
