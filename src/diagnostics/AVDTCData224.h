#pragma once

#include <string>
#include <vector>

namespace torv {

/// What the first of the two reports of trouble codes holds.
struct AVDTCData224 {
    std::string
        numberOfDTCReported;  ///< of both reports, as the module counts them; may be more than they hold
    std::vector<std::string> DTCData;  ///< code texts
};

}  // namespace torv
