#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace torv {

/// A decimal number that keeps the text it was made from, so that nothing is lost between a document
/// and whoever reads it. Any thread.
///
/// The text has the form of a JSON number; the caller sees to that. Reading as a whole number cuts toward
/// zero and saturates.
class Number final {
public:
    Number() = default;
    explicit Number(std::string text) : m_text(std::move(text)) {}
    [[nodiscard]] static Number fromInteger(std::int64_t value);
    /// The shortest text that reads back as the same value; infinite or not a number gives 0.
    [[nodiscard]] static Number fromDouble(double value);
    [[nodiscard]] static Number fromFloat(float value);

    [[nodiscard]] const std::string& stringValue() const { return m_text; }
    [[nodiscard]] std::int32_t intValue() const;
    [[nodiscard]] std::int64_t longLongValue() const;
    [[nodiscard]] float floatValue() const;
    [[nodiscard]] double doubleValue() const;
    [[nodiscard]] bool boolValue() const { return doubleValue() != 0.0; }

    friend bool operator==(const Number&, const Number&) = default;

private:
    std::string m_text = "0";
};

}  // namespace torv
