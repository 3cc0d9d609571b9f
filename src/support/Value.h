#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "support/Number.h"

namespace torv {

class Value;
using Array = std::vector<Value>;
using Data = std::vector<std::uint8_t>;

/// Members by key, in the order of their first appearance. Finding one takes the same time in a
/// document of a hundred thousand keys. Distinct objects are independent; one object is not for two
/// threads while one of them writes.
class Dictionary final {
public:
    struct Member;

    Dictionary();
    Dictionary(std::initializer_list<Member> members);
    Dictionary(const Dictionary&);
    Dictionary(Dictionary&&) noexcept;
    Dictionary& operator=(const Dictionary&);
    Dictionary& operator=(Dictionary&&) noexcept;
    ~Dictionary();

    /// Null when there is no such key.
    [[nodiscard]] const Value* find(std::string_view key) const;
    [[nodiscard]] Value* find(std::string_view key);
    /// The value under the key; a null value when there is none, so reads of absent things stay safe.
    [[nodiscard]] const Value& operator[](std::string_view key) const;
    /// Replaces in place or appends.
    void set(std::string key, Value value);
    bool remove(std::string_view key);

    [[nodiscard]] std::size_t size() const;
    [[nodiscard]] bool empty() const { return size() == 0; }
    [[nodiscard]] std::vector<Member>::const_iterator begin() const;
    [[nodiscard]] std::vector<Member>::const_iterator end() const;

    friend bool operator==(const Dictionary& a, const Dictionary& b);

private:
    [[nodiscard]] std::size_t position(std::string_view key) const;
    void enterIntoIndex(std::size_t position);
    void rebuildIndex(std::size_t slots);

    std::vector<Member> m_members;
    std::vector<std::uint32_t> m_index;  // open addressing, position + 1; empty while the dictionary is small
};

/// What documents and stores hold: nothing, a truth value, a number, a text (UTF-8), a data block, a list or
/// a dictionary. The conversions never fail: what does not convert reads as 0, false or nothing. One object
/// is not for two threads while one of them writes.
class Value final {
public:
    Value() = default;
    template <std::same_as<bool> Truth>  // nothing else turns into a truth value by itself
    Value(Truth truth) : m_content(truth) {}
    Value(Number number) : m_content(std::move(number)) {}
    Value(std::string text) : m_content(std::move(text)) {}
    Value(const char* text) : m_content(std::string{text}) {}
    Value(Data data) : m_content(std::move(data)) {}
    Value(Array array) : m_content(std::move(array)) {}
    Value(Dictionary dictionary) : m_content(std::move(dictionary)) {}

    [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(m_content); }
    [[nodiscard]] const bool* truth() const { return std::get_if<bool>(&m_content); }
    [[nodiscard]] const Number* number() const { return std::get_if<Number>(&m_content); }
    [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&m_content); }
    [[nodiscard]] const Data* data() const { return std::get_if<Data>(&m_content); }
    [[nodiscard]] const Array* array() const { return std::get_if<Array>(&m_content); }
    [[nodiscard]] Array* array() { return std::get_if<Array>(&m_content); }
    [[nodiscard]] const Dictionary* dictionary() const { return std::get_if<Dictionary>(&m_content); }
    [[nodiscard]] Dictionary* dictionary() { return std::get_if<Dictionary>(&m_content); }

    /// Of a number, a truth value or the leading number of a text; 0 of anything else.
    [[nodiscard]] std::int32_t intValue() const;
    [[nodiscard]] std::int64_t longLongValue() const;
    [[nodiscard]] float floatValue() const;
    [[nodiscard]] double doubleValue() const;
    [[nodiscard]] bool boolValue() const;

    /// A text as it stands, a number as its text, a truth value as "1" or "0", nothing of the rest.
    [[nodiscard]] std::optional<std::string> textValue() const;

    /// A member of a dictionary; a null value of anything else.
    [[nodiscard]] const Value& operator[](std::string_view key) const;
    /// The elements of a list; an empty list of anything else.
    [[nodiscard]] const Array& elements() const;

    friend bool operator==(const Value&, const Value&) = default;

private:
    std::variant<std::monostate, bool, Number, std::string, Data, Array, Dictionary> m_content;
};

struct Dictionary::Member {
    std::string key;
    Value value;

    friend bool operator==(const Member&, const Member&) = default;
};

}  // namespace torv
