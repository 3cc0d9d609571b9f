#include "qml/WindowTurn.h"

#include <algorithm>
#include <array>
#include <utility>

namespace torv {
namespace {

constexpr std::array<std::pair<const char*, Turn>, 4> words{
    {{"auto", Turn::automatic}, {"left", Turn::left}, {"right", Turn::right}, {"never", Turn::never}}};

}  // namespace

std::optional<Turn> turnFromText(const QString& text) {
    const auto found = std::find_if(words.begin(), words.end(),
                                    [&](const auto& word) { return text == QLatin1String{word.first}; });
    if (found == words.end()) return std::nullopt;
    return found->second;
}

int turnOf(Turn turn, const WindowState& window) {
    constexpr int quarter = 90;
    if (!window.upright || window.portraitScreen) return 0;
    switch (turn) {
        case Turn::left:
            return -quarter;
        case Turn::right:
            return quarter;
        case Turn::automatic:
            return window.fullScreen ? quarter : 0;
        case Turn::never:
            break;
    }
    return 0;
}

}  // namespace torv
