#include "platform/real/OnScreenKeyboard.h"

#include <QFile>
#include <QLibraryInfo>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "support/FileContents.h"

namespace torv {
namespace {

constexpr std::uint64_t directInput = 1U << 1U;        // INPUT_PROP_DIRECT: touches lie on the picture
constexpr std::uint64_t upperLetters = 0x3FFU << 16U;  // KEY_Q to KEY_P

/// The lowest word of a bitmap "B: NAME=...", whose words stand with the highest first.
std::uint64_t lowestWord(std::string_view device, std::string_view name) {
    const auto found = device.find(name);
    if (found == std::string_view::npos) return 0;
    auto line = device.substr(found + name.size());
    line = line.substr(0, line.find('\n'));
    while (!line.empty() && line.back() == ' ')
        line.remove_suffix(1);
    const std::string word{line.substr(line.rfind(' ') + 1)};
    return std::strtoull(word.c_str(), nullptr, 16);
}

}  // namespace

bool lacksKeyboard(std::string_view devices) {
    bool touches = false;
    while (!devices.empty()) {
        const auto end = devices.find("\n\n");
        const auto device = devices.substr(0, end);
        devices.remove_prefix(end == std::string_view::npos ? devices.size() : end + 2);
        if ((lowestWord(device, "B: KEY=") & upperLetters) == upperLetters) return false;
        touches = touches || (lowestWord(device, "B: PROP=") & directInput) != 0;
    }
    return touches;
}

void chooseOnScreenKeyboard() {
    // Under Wayland the compositor has its own keyboard.
    const std::array chosen{"QT_IM_MODULE", "XMODIFIERS", "WAYLAND_DISPLAY"};
    if (std::any_of(chosen.begin(), chosen.end(),
                    [](const char* name) { return qEnvironmentVariableIsSet(name); }))
        return;
    const auto plugin = QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                        QStringLiteral("/platforminputcontexts/libqtvirtualkeyboardplugin.so");
    std::string error;
    const auto devices = contentsOfFile("/proc/bus/input/devices", error);
    if (devices && lacksKeyboard(*devices) && QFile::exists(plugin))
        qputenv("QT_IM_MODULE", "qtvirtualkeyboard");
}

}  // namespace torv
