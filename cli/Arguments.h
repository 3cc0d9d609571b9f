#pragma once

#include <QStringList>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "options/CommonOptions.h"
#include "support/AV.h"

namespace itorvctl {

/// Exit codes, for scripts.
enum ExitCode : int {
    success = 0,
    noAnswer = 1,      ///< the module did not answer, or something could not be stored or written
    badArguments = 2,  ///< or a profile that can't be used
    noConnection = 3,  ///< no session within the time limit
    noServer = 4,      ///< the update server could not be asked
    notTaken = 4,      ///< the module has not taken a value of a tuning profile
    findings = 5,      ///< the module does not hold to what is told of the link
};

enum class Command {
    watch,
    get,
    set,
    frames,
    record,
    codes,
    settings,
    profiles,
    warnings,
    exportRecording,
    vehicles,
    defaults,
    check,
    names
};

struct Arguments {
    Command command = Command::watch;
    torv::CommonOptions common;
    bool json = false;
    bool force = false;      ///< `set` writes what is no setting and no tuning item too
    bool yes = false;        ///< `codes clear` asks nothing
    bool live = false;       ///< `profiles diff` compares with the module
    bool newList = false;    ///< `profiles list` begins a new one in place of one that can't be read
    bool store = false;      ///< `set` stores what it has written
    bool tryWrites = false;  ///< `check` writes other values, and then the old ones again
    bool verbose = false;
    std::chrono::milliseconds timeout{10000};           ///< to wait for a session
    std::optional<std::chrono::milliseconds> duration;  ///< then `watch`, `frames`, `record` and `check` end
    torv::AID aid = 0;
    std::string value;
    std::optional<std::int32_t> flags;
    std::string format;              ///< of `export`
    std::vector<std::string> words;  ///< behind the command
};

/// Nothing, with one line in `error`, when the arguments are not in order. Help and version end the program.
[[nodiscard]] std::optional<Arguments> readArguments(const QStringList& arguments, std::string& error);

}  // namespace itorvctl
