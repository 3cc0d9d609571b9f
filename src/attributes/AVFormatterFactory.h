#pragma once

#include <memory>

#include "attributes/AVFormatter.h"
#include "attributes/AVFormatterParameter.h"

namespace torv {

/// Makes the formatter that a profile names by number, 0 to 10. Any thread.
class AVFormatterFactory final {
public:
    /// Null for a number outside the table.
    [[nodiscard]] static std::shared_ptr<AVFormatter> formatterWithParameter(
        const AVFormatterParameter& parameter);
};

}  // namespace torv
