#pragma once

#include <string>
#include <vector>

#include "tuning/TuningPass.h"

namespace torv {

/// What the user must know of a pass: the values that the module did not take, in units. A value.
struct PassReport {
    enum class Fault {
        notAcknowledged,  ///< the write was not acknowledged
        different,        ///< the module holds another value
        unanswered,       ///< acknowledged, and not read back
        overtaken,        ///< a reset that was acknowledged, and then a profile came over it
    };
    struct Row {
        AID aid = 0;
        std::string name;
        std::string wanted;
        std::string found;  ///< empty where the module did not answer
        Fault fault = Fault::different;
    };

    std::size_t total = 0;
    std::vector<Row> rows;
    ProfileDictionary wanted;     ///< of the rows, to try them again
    bool isReset = false;         ///< it was the reset that did not last
    bool asFoundMissing = false;  ///< the module did not tell what it held before its first pass

    /// Two values are the same when they read the same, and hold the same where there is more than the text.
    [[nodiscard]] static PassReport of(const PassRecord& record, const Vehicle& vehicle);
    /// After another try of the rows, which may have ended early: what was not tried stays as it was.
    [[nodiscard]] PassReport after(PassReport retried) const;
    [[nodiscard]] bool isClean() const { return rows.empty() && !asFoundMissing; }
    /// In one sentence.
    [[nodiscard]] std::string summary() const;
};

[[nodiscard]] std::string sentenceFor(const PassReport::Row& row);

/// A tuning item that reads otherwise in two sets of values; an empty text where a set lacks it.
struct ValueDifference {
    AID aid = 0;
    std::string name;
    std::string first;
    std::string second;
};
/// In the order of the vehicle's tuning items.
[[nodiscard]] std::vector<ValueDifference> differencesOf(const ProfileDictionary& first,
                                                         const ProfileDictionary& second,
                                                         const Vehicle& vehicle);

/// With names that tell them apart: those of an equalizer's bands with their group's before them.
[[nodiscard]] std::vector<TorvAttribute> namedTuningItems(const Vehicle& vehicle);
/// The value as it is read, with its unit.
[[nodiscard]] std::string shownValue(const TorvAttribute& item, const AV& value);

}  // namespace torv
