#include "platform/real/SystemLog.h"

#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/sinks/syslog_sink.h>
#include <spdlog/spdlog.h>
#include <syslog.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/Log.h"

namespace torv {
namespace {

constexpr std::size_t longestLine = 2000;

}  // namespace

void startSystemLog(const char* programName, LogTerminal terminal) {
    std::vector<spdlog::sink_ptr> sinks;
    auto system = std::make_shared<spdlog::sinks::syslog_sink_mt>(programName, LOG_PID, LOG_USER, true);
    system->set_pattern("%v");
    sinks.push_back(std::move(system));
    if (terminal == LogTerminal::yes) {
        auto screen = std::make_shared<spdlog::sinks::stderr_sink_mt>();
        screen->set_pattern("%H:%M:%S.%e %v");
        sinks.push_back(std::move(screen));
    }
    auto logger = std::make_shared<spdlog::logger>(programName, sinks.begin(), sinks.end());
    setLogSink([logger](std::string_view line) {
        std::string text{line.substr(0, longestLine)};
        std::replace_if(
            text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
        logger->info("{}", text);
    });
}

}  // namespace torv
