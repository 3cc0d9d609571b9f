#pragma once

#include <functional>
#include <string_view>

namespace torv {

/// Something that ships with the program is not as it must be: a line to the system log and to the standard
/// error stream, and the end of the process. Any thread.
[[noreturn]] void failAssertion(std::string_view text);

/// One line to the system log. Any thread. Before a sink is set, lines are dropped.
void logLine(std::string_view line);

/// Called on the thread that logs, by several at a time. An empty one drops all lines.
using LogSink = std::function<void(std::string_view)>;
void setLogSink(LogSink sink);

}  // namespace torv
