#pragma once

#include <optional>
#include <string>
#include <vector>

#include "attributes/TorvAttribute.h"

namespace torv {

/// A named group of tuning attributes with the scale that they share.
struct TorvAttributeGroup {
    std::optional<std::string> name;
    std::optional<std::string> type;  ///< "list" or "equalizer"
    std::optional<std::string> unit;
    // Each has passed through single precision: 0.1 is the double nearest to the float 0.1.
    double defaultValue = 0.0;  ///< centre of the scale
    double lowValue = 0.0;
    double highValue = 0.0;
    double resolutionValue = 0.0;
    std::vector<TorvAttribute> items;

    /// Texts as they stand, not percent-decoded.
    [[nodiscard]] static TorvAttributeGroup torvAttributeGroupFromDictionary(const Dictionary& dictionary);
};

/// One attribute for each dictionary of a list, in order; what is no dictionary yields a blank attribute.
[[nodiscard]] std::vector<TorvAttribute> torvAttributesFromList(const Value& list);

}  // namespace torv
