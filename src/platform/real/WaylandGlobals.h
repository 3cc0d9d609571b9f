#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torv {

/// The interfaces that a Wayland compositor offers, from what it has sent to a client that has asked for its
/// registry as object 2 and then for a callback as object 3; nothing until that callback is there, and of
/// what is no such answer.
[[nodiscard]] std::optional<std::vector<std::string>> waylandGlobalsFrom(std::string_view received);

/// The same of the compositor at this socket, on a connection of its own; nothing when it can't be asked, or
/// does not answer within a second. Needs no library and no Qt object.
[[nodiscard]] std::optional<std::vector<std::string>> waylandGlobals(const std::filesystem::path& socket);

}  // namespace torv
