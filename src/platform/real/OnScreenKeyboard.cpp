#include "platform/real/OnScreenKeyboard.h"

#include <QFile>
#include <QLibraryInfo>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/real/WaylandGlobals.h"
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

bool needsOwnKeyboard(const KeyboardSurroundings& surroundings) {
    // Those that Qt 6.4 binds, by which a compositor's keyboard comes with a field.
    constexpr std::array spoken{"zwp_text_input_manager_v1", "zwp_text_input_manager_v2",
                                "qt_text_input_method_manager_v1"};
    if (surroundings.inputMethodChosen || !lacksKeyboard(surroundings.devices)) return false;
    if (!surroundings.wayland) return true;
    const auto& globals = surroundings.globals;
    return globals && std::find_first_of(globals->begin(), globals->end(), spoken.begin(), spoken.end()) ==
                          globals->end();
}

void chooseOnScreenKeyboard() {
    const auto plugin = QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                        QStringLiteral("/platforminputcontexts/libqtvirtualkeyboardplugin.so");
    std::string error;
    const auto display = qEnvironmentVariable("WAYLAND_DISPLAY");
    const auto platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    KeyboardSurroundings surroundings{
        .inputMethodChosen =
            qEnvironmentVariableIsSet("QT_IM_MODULE") || qEnvironmentVariableIsSet("XMODIFIERS"),
        .wayland = !display.isEmpty() && (platform.isEmpty() || platform.startsWith(u"wayland")),
        .globals = {},
        .devices = contentsOfFile("/proc/bus/input/devices", error).value_or(std::string{})};
    if (surroundings.wayland && lacksKeyboard(surroundings.devices)) {
        const std::filesystem::path folder{qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString()};
        surroundings.globals = waylandGlobals(folder / display.toStdString());
    }
    if (needsOwnKeyboard(surroundings) && QFile::exists(plugin)) qputenv("QT_IM_MODULE", "qtvirtualkeyboard");
}

}  // namespace torv
