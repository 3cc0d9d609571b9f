#include "JSON/ValueArchive.h"

#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"
#include "support/Hexadecimal.h"
#include "support/Utf8.h"

namespace torv {
namespace {

constexpr auto dataKey = "$data";
constexpr auto bytesKey = "$bytes";
constexpr auto dictionaryKey = "$dictionary";

Value tagged(const char* key, Value value) {
    return Dictionary{{key, std::move(value)}};
}

Value withTags(const Value& value) {
    if (const auto* data = value.data()) return tagged(dataKey, hexadecimalText(*data));
    if (const auto* text = value.text(); text && !isUtf8(*text)) {
        return tagged(bytesKey,
                      hexadecimalText({reinterpret_cast<const std::uint8_t*>(text->data()), text->size()}));
    }
    if (const auto* list = value.array()) {
        Array result;
        result.reserve(list->size());
        for (const auto& element : *list)
            result.push_back(withTags(element));
        return result;
    }
    if (const auto* members = value.dictionary()) {
        Dictionary result;
        for (const auto& [key, member] : *members)
            result.set(key, withTags(member));
        const bool looksTagged = !members->empty() && members->begin()->key.starts_with('$');
        return looksTagged ? tagged(dictionaryKey, std::move(result)) : Value{std::move(result)};
    }
    return value;
}

std::optional<Value> withoutTags(const Value& value, std::string& error);

/// A member that can't be read leaves a null, and the others stand.
Value membersWithoutTags(const Dictionary& members, std::string& error) {
    Dictionary result;
    for (const auto& [key, member] : members) {
        auto plain = withoutTags(member, error);
        if (!plain) error = "the value of \"" + key + "\" has an unknown form";
        result.set(key, plain ? std::move(*plain) : Value{});
    }
    return result;
}

std::optional<Value> taggedContent(const Dictionary& members, std::string& error) {
    const auto& [key, content] = *members.begin();
    if (members.size() != 1) return std::nullopt;
    if (key == dictionaryKey && content.dictionary()) return membersWithoutTags(*content.dictionary(), error);
    const auto bytes = content.text() ? bytesFromHexadecimal(*content.text()) : std::nullopt;
    if (!bytes) return std::nullopt;
    if (key == dataKey) return *bytes;
    if (key == bytesKey) return std::string{bytes->begin(), bytes->end()};
    return std::nullopt;
}

std::optional<Value> withoutTags(const Value& value, std::string& error) {
    if (const auto* list = value.array()) {
        Array result;
        result.reserve(list->size());
        for (const auto& element : *list) {
            auto plain = withoutTags(element, error);
            if (!plain) return std::nullopt;
            result.push_back(std::move(*plain));
        }
        return result;
    }
    if (const auto* members = value.dictionary()) {
        const bool looksTagged = !members->empty() && members->begin()->key.starts_with('$');
        return looksTagged ? taggedContent(*members, error) : membersWithoutTags(*members, error);
    }
    return value;
}

}  // namespace

std::optional<std::string> archivedText(const Value& value) {
    return SBJsonWriter{}.stringWithFragment(withTags(value));
}

std::optional<Value> valueFromArchivedText(std::string_view text, std::string& error) {
    SBJsonParser parser;
    const auto read = parser.fragmentWithString(text);
    if (!read) {
        error = parser.errorTrace().empty() ? "unreadable" : parser.errorTrace().front().description;
        return std::nullopt;
    }
    error.clear();
    auto value = withoutTags(*read, error);
    if (!value) error = "unknown form of a value";
    return value;
}

}  // namespace torv
