#pragma once

#include <any>
#include <cstdint>
#include <string>

namespace torv {

/// A decoded value: what a screen shows and what a formatter turns back into bytes. A plain value.
struct AVFormatterData {
    /// State bits. The bit values, and not their positions, are what readers compare with.
    enum Flag : std::int32_t {
        firstOff = 1,
        firstOn = 2,
        third = 4,
        secondOff = 8,
        secondOn = 16,
    };

    std::int32_t flags = 0;
    std::string value;        ///< display text
    std::any additionalData;  ///< further decoded fields; only few formatters have any
};

}  // namespace torv
