#pragma once

#include <functional>
#include <memory>

#include "tuning/TuningPass.h"

namespace torv {

/// What the module of a vehicle held before anything was pushed to it, kept as a profile of its own: "As
/// found " and the date. So there is always a way back. Main thread.
class AsFoundProfile final {
public:
    enum class Outcome {
        notDue,      ///< kept already, lost already, or a vehicle without tuning items
        kept,        ///< just now
        unanswered,  ///< the module did not tell all its values; nothing was kept
    };

    /// Before a pass. Reads every tuning item once or twice, blocking, and gives up at the first that does
    /// not come. `ended` ends it early.
    static Outcome keep(const std::shared_ptr<iTorvFeeder>& feeder, const Vehicle& vehicle,
                        const std::function<bool()>& ended);
    /// After a pass: once the module has taken anything, what it held at first can't be found any more.
    static void closeAfter(const PassRecord& record, const Vehicle& vehicle);
};

}  // namespace torv
