#include "platform/Platform.h"

#include <cstdio>
#include <cstdlib>

namespace torv {
namespace {

Platform*& installed() {
    static Platform* platform = nullptr;
    return platform;
}

}  // namespace

Platform& Platform::current() {
    if (auto* platform = installed()) return *platform;
    std::fputs("no platform is installed\n", stderr);
    std::abort();
}

void Platform::install(Platform* platform) {
    installed() = platform;
}

}  // namespace torv
