#include "platform/real/LoopbackOnly.h"

#include <sys/socket.h>

#include <charconv>
#include <filesystem>
#include <string>
#include <system_error>

namespace torv {
namespace {

constexpr char loopback[] = "lo";

bool listens(int file) {
    int answer = 0;
    socklen_t size = sizeof answer;
    return ::getsockopt(file, SOL_SOCKET, SO_ACCEPTCONN, &answer, &size) == 0 && answer != 0;
}

}  // namespace

bool keepListenersOnLoopback() {
    bool tied = true;
    bool any = false;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd", error}) {
        const auto name = entry.path().filename().string();
        int file = -1;
        std::from_chars(name.data(), name.data() + name.size(), file);
        if (!listens(file)) continue;
        any = true;
        tied = ::setsockopt(file, SOL_SOCKET, SO_BINDTODEVICE, loopback, sizeof loopback) == 0 && tied;
    }
    return any && tied && !error;
}

}  // namespace torv
