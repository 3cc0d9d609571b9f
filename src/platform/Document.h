#pragma once

#include <string>

#include "support/Value.h"

namespace torv {

/// What leaves the program: a file that is handed to the user.
struct Document {
    std::string fileName;
    std::string mimeType;
    Data contents;
};

}  // namespace torv
