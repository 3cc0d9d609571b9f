#pragma once

namespace torv {

enum class LogTerminal : bool { no, yes };

/// Sends `logLine` to the system log, and to the standard error stream where asked, by spdlog. Each line is
/// cut to 2,000 bytes, and its control characters become blanks. Main thread, once.
void startSystemLog(const char* programName, LogTerminal terminal);

}  // namespace torv
