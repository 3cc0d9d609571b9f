#include "attributes/AVGearFormatter.h"

#include <algorithm>
#include <array>

namespace torv {
namespace {

struct Gear {
    std::uint8_t byte;
    char label;
};
/// 4 and 5 are both shown as 4; kept as it is.
constexpr std::array<Gear, 11> gears{{
    {0, '0'},
    {1, '1'},
    {2, '2'},
    {3, '3'},
    {4, '4'},
    {5, '4'},
    {6, '5'},
    {16, 'R'},
    {240, 'P'},
    {241, 'N'},
    {242, 'L'},
}};
constexpr int beforeFirstLabel = '0' - 1;

}  // namespace

std::optional<AVFormatterData> AVGearFormatter::dataFromAV(std::uint8_t* bytes) {
    if (!bytes) return std::nullopt;
    const auto* gear =
        std::find_if(gears.begin(), gears.end(), [&](const Gear& g) { return g.byte == bytes[0]; });
    AVFormatterData data;
    data.value = std::to_string(gear == gears.end() ? bytes[0] + beforeFirstLabel : gear->label);
    return data;
}

}  // namespace torv
