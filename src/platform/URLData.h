#pragma once

#include <optional>
#include <string>

#include "support/Value.h"

namespace torv {

/// What the URL names, in one blocking call; nothing when the request failed or a status above 399 came
/// back, whatever came with it. The log says why. Any thread.
[[nodiscard]] std::optional<Data> dataOfURL(const std::string& url);

}  // namespace torv
