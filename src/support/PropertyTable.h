#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "support/Utf8.h"
#include "support/Value.h"

namespace torv {

/// Takes a list or a dictionary as it stands.
using ObjectProperty = std::optional<Value>;

/// One field of `Object` that documents can fill, by the name of its setter without "set" and the colon.
/// The type of the member decides how a value is converted.
template <class Object>
struct Property {
    std::string_view name;
    std::variant<std::optional<std::string> Object::*, ObjectProperty Object::*, std::int64_t Object::*,
                 std::int32_t Object::*, double Object::*, float Object::*, bool Object::*>
        member;
};

namespace property_detail {

/// False when a null meets a member that takes objects: that ends the filling.
inline bool assign(std::optional<std::string>& member, const Value& value) {
    if (value.isNull()) return false;
    member = value.text() ? percentDecoded(*value.text()) : value.textValue();
    return true;
}

inline bool assign(ObjectProperty& member, const Value& value) {
    if (value.isNull()) return false;
    if (!value.text()) {
        member = value;
    } else if (auto decoded = percentDecoded(*value.text())) {
        member = std::move(*decoded);
    } else {
        member = std::nullopt;
    }
    return true;
}

inline bool assign(std::int64_t& member, const Value& value) {
    return member = value.longLongValue(), true;
}
inline bool assign(std::int32_t& member, const Value& value) {
    return member = value.intValue(), true;
}
inline bool assign(double& member, const Value& value) {
    return member = value.doubleValue(), true;
}
inline bool assign(float& member, const Value& value) {
    return member = value.floatValue(), true;
}
inline bool assign(bool& member, const Value& value) {
    return member = value.boolValue(), true;
}

}  // namespace property_detail

/// Fills the object's fields from the dictionary, in the dictionary's order. Keys match with their first
/// letter in either case; what no property answers to is passed over. Texts are percent-decoded, and one that
/// can't be decoded leaves nothing. A null for a text or an object ends the filling at once, with the keys
/// behind it left unset; for a number or a truth value it counts as 0. Any thread.
template <class Object>
void setPropertiesFromDictionary(Object& object, const Dictionary& dictionary,
                                 std::span<const Property<Object>> properties) {
    for (const auto& [key, value] : dictionary) {
        const auto name = capitalizeFirstLetterUpper(key, true);
        for (const auto& property : properties) {
            if (property.name != name) continue;
            const bool goOn = std::visit(
                [&, &given = value](auto member) { return property_detail::assign(object.*member, given); },
                property.member);
            if (!goOn) return;
        }
    }
}

}  // namespace torv
