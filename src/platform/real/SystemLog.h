#pragma once

namespace torv {

enum class LogTerminal : bool { no, yes };

/// Sends `logLine` to the system log, and to the standard error stream where asked, by spdlog. Lines from
/// outside are cut to 2,000 bytes and keep to one line.
void startSystemLog(const char* programName, LogTerminal terminal);

}  // namespace torv
