#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "attributes/AVFormatter.h"
#include "support/AV.h"
#include "support/Value.h"

namespace torv {

/// What one AID means on the current vehicle.
///
/// Built from a profile's dictionary on each request; what is not in there is 0, false or nothing. Read-only
/// once built, except for rule and value of the warning on the warnings screen. Made on one thread, then read
/// on any: the reading thread decodes by it.
struct TorvAttribute {
    using Text = std::optional<std::string>;

    AID aid = 0;
    Text name;  ///< also the key under which a sensor's warning is stored
    Text unit;  ///< key of the unit table; "tSEC" and "tMIN" choose a time layout in the live list
    double minValue = 0.0;
    double maxValue = 0.0;
    double warningvaluelow = 0.0;
    double warningvaluehigh = 0.0;
    Text additionalUnit;  ///< of a two-mode setting, with its range, while its second switch is on
    double additionalMinValue = 0.0;
    double additionalMaxValue = 0.0;
    std::int64_t warningValue = 0;
    std::int32_t warningRule =
        0;  ///< 0 none; 1 at or above, 2 at or below, 3 above, 4 below; +100 switched off
    std::shared_ptr<AVFormatter> formatter;  ///< null for a number that the factory does not know
    std::optional<Value> options;            ///< lists of choices, and the values that go with them by index
    std::optional<Value> optionValues;
    std::optional<Value> options1;
    std::optional<Value> optionValues1;
    bool toggable = false;
    bool enabled = false;
    Text minmax;    ///< "high", "low", "both", "off" or "none"
    Text category;  ///< a topic, an underscore and an index; such a sensor is kept off the dashboards
    std::int64_t decimaldigits = 0;

    [[nodiscard]] static TorvAttribute torvAttributeFromDictionary(const Dictionary& dictionary);

    /// The display text of a unit key, by exact comparison; nothing when the table has no such key.
    [[nodiscard]] static std::optional<std::string> shortUnitDescriptionForUnitKey(std::string_view key);

    /// A value that is not a number is in no warning.
    [[nodiscard]] bool isInWarning(double value) const;

    /// The formatter's record for an AV; nothing without a formatter.
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(AV& value) const;
};

/// What stands behind a value of this unit: its display text, or the key itself where the table has none.
[[nodiscard]] std::string unitText(const std::optional<std::string>& key);

/// Texts of a choice list, in order; what is no text or number reads as the empty text.
[[nodiscard]] std::vector<std::string> textsOfList(const std::optional<Value>& list);

}  // namespace torv
