#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "JSON/SBJsonWriter.h"
#include "support/Value.h"

namespace torv {

// JSON in one call, with the options as they stand at the start. Failures give nothing and one line in
// the log. Any thread.

/// Reads a dictionary or a list.
[[nodiscard]] std::optional<Value> JSONValue(std::string_view text);
/// Reads any value.
[[nodiscard]] std::optional<Value> JSONFragmentValue(std::string_view text);

/// Writes a dictionary or a list.
[[nodiscard]] std::optional<std::string> JSONRepresentation(const Value& value);
/// Writes any value.
[[nodiscard]] std::optional<std::string> JSONFragment(const Value& value);

template <AnswersProxyForJson T>
[[nodiscard]] std::optional<std::string> JSONRepresentation(const T& object) {
    return JSONRepresentation(object.proxyForJson());
}
template <AnswersProxyForJson T>
[[nodiscard]] std::optional<std::string> JSONFragment(const T& object) {
    return JSONFragment(object.proxyForJson());
}

}  // namespace torv
