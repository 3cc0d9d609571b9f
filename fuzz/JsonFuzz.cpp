// Arbitrary bytes into the reader. What it accepts must write and read back as the same value.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text{reinterpret_cast<const char*>(bytes), size};
    torv::SBJsonParser parser;
    parser.setMaxDepth(0);
    const auto value = parser.fragmentWithString(text);
    if (value.has_value() != parser.errorTrace().empty()) std::abort();
    if (!value) return 0;

    for (const bool pretty : {false, true}) {
        torv::SBJsonWriter writer;
        writer.setMaxDepth(0);
        writer.setHumanReadable(pretty);
        writer.setSortKeys(pretty);
        const auto written = writer.stringWithFragment(*value);
        if (!written || parser.fragmentWithString(*written) != value) std::abort();
    }
    return 0;
}
