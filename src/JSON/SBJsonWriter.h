#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "JSON/SBJsonBase.h"
#include "support/Value.h"

namespace torv {

/// An object of another kind that names a value, or a further such object, to be written in its place.
template <class T>
concept AnswersProxyForJson = requires(const T& object) {
    object.proxyForJson();
};

/// Writes values as JSON text (UTF-8). One object is not for two threads at once.
///
/// A data block has no form in JSON and is refused. Keys are texts by their type.
class SBJsonWriter final : public SBJsonBase {
public:
    [[nodiscard]] bool humanReadable() const { return m_humanReadable; }
    /// One element or member to a line, two blanks further in per level.
    void setHumanReadable(bool on) { m_humanReadable = on; }
    [[nodiscard]] bool sortKeys() const { return m_sortKeys; }
    /// By code point, which is the byte order of UTF-8; off, the order of the dictionary stays.
    void setSortKeys(bool on) { m_sortKeys = on; }

    /// Text of a dictionary or a list; nothing on error.
    [[nodiscard]] std::optional<std::string> stringWithObject(const Value& value);
    /// Text of any value; nothing on error.
    [[nodiscard]] std::optional<std::string> stringWithFragment(const Value& value);

    template <AnswersProxyForJson T>
    [[nodiscard]] std::optional<std::string> stringWithObject(const T& object) {
        return stringWithObject(object.proxyForJson());
    }
    template <AnswersProxyForJson T>
    [[nodiscard]] std::optional<std::string> stringWithFragment(const T& object) {
        return stringWithFragment(object.proxyForJson());
    }

private:
    bool appendValue(const Value& value, std::string& out);
    bool appendArray(const Array& elements, std::string& out);
    bool appendDictionary(const Dictionary& members, std::string& out);
    bool appendMember(const Dictionary::Member& member, std::string& out);
    void appendLineBreak(std::string& out) const;

    bool m_humanReadable = false;
    bool m_sortKeys = false;
};

}  // namespace torv
