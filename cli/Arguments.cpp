#include "Arguments.h"

#include <QCommandLineParser>
#include <algorithm>
#include <array>

#include "support/TextNumbers.h"

namespace itorvctl {
namespace {

constexpr auto description =
    "Talks to the tuning module from a terminal.\n"
    "\n"
    "Commands:\n"
    "  watch           show all sensors live: a table on a terminal, else a line for each update\n"
    "  get AID         ask the module for one value and show it\n"
    "  set AID VALUE   write one value, in the attribute's own unit, and say whether it was acknowledged\n"
    "  frames          show every frame in both directions, decoded\n"
    "\n"
    "Exit codes: 0 done, 1 the module did not answer, 2 bad arguments or profile, 3 no connection.\n"
    "\n"
    "Examples:\n"
    "  itorvctl watch --module 127.0.0.1:2000\n"
    "  itorvctl watch --json --for 5 | head\n"
    "  itorvctl get 78\n"
    "  itorvctl set 95 3200";

struct CommandRow {
    const char* name;
    Command command;
    int operands;
};
constexpr std::array<CommandRow, 4> commands{{
    {"watch", Command::watch, 0},
    {"get", Command::get, 1},
    {"set", Command::set, 2},
    {"frames", Command::frames, 0},
}};

constexpr double mostSeconds = 7 * 86400;

std::optional<std::chrono::milliseconds> seconds(const QString& text) {
    const auto number = torv::wholeTextFloatValue(text.toStdString());
    if (!number || *number < 0 || static_cast<double>(*number) > mostSeconds) return std::nullopt;
    return std::chrono::milliseconds{static_cast<std::int64_t>(static_cast<double>(*number) * 1000.0)};
}

std::optional<std::int64_t> wholeNumber(const QString& text, std::int64_t lowest, std::int64_t highest) {
    bool isNumber = false;
    const auto number = text.toLongLong(&isNumber);
    if (!isNumber || number < lowest || number > highest) return std::nullopt;
    return number;
}

}  // namespace

std::optional<Arguments> readArguments(const QStringList& arguments, std::string& error) {
    const auto refuse = [&](std::string why) -> std::optional<Arguments> {
        error = std::move(why);
        return std::nullopt;
    };
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("command", "watch, get, set or frames", "COMMAND [AID [VALUE]]");
    parser.addOptions({
        {"module", "Connect to this module, wherever the network says it is.", "HOST:PORT"},
        {"interface", "The network interface whose address tells which module to look for (en0).", "NAME",
         "en0"},
        {"profile", "Use this vehicle profile document.", "FILE"},
        {"json", "One JSON object a line."},
        {"timeout", "Seconds to wait for the module (10).", "SECONDS", "10"},
        {"for", "End after so many seconds; watch and frames go on without.", "SECONDS"},
        {"flags", "State bits to write with the value (set): 1 off, 2 on, 4 third, 8/16 second off/on.",
         "NUMBER"},
        {"verbose", "Say on the standard error stream what goes on."},
    });
    if (!parser.parse(arguments)) return refuse(parser.errorText().toStdString());
    if (parser.isSet("help")) parser.showHelp(0);
    if (parser.isSet("version")) parser.showVersion();

    const auto words = parser.positionalArguments();
    if (words.isEmpty()) return refuse("a command is missing: watch, get, set or frames");
    const auto row = std::find_if(commands.begin(), commands.end(), [&](const CommandRow& c) {
        return words.first() == QLatin1String{c.name};
    });
    if (row == commands.end()) return refuse("there is no command \"" + words.first().toStdString() + "\"");
    if (words.size() - 1 != row->operands) {
        return refuse(std::string{row->name} + " takes " + std::to_string(row->operands) +
                      (row->operands == 1 ? " argument" : " arguments") + "; see --help");
    }

    Arguments result;
    result.command = row->command;
    result.connection.interface = parser.value("interface").toStdString();
    result.profile = parser.value("profile").toStdString();
    result.json = parser.isSet("json");
    result.verbose = parser.isSet("verbose");
    if (parser.isSet("module")) {
        result.connection.module = torv::endpointFromText(parser.value("module").toStdString());
        if (!result.connection.module) {
            return refuse("--module takes an address and a port from 1 to 65535, as in 127.0.0.1:2000");
        }
    }
    const auto timeout = seconds(parser.value("timeout"));
    if (!timeout) return refuse("--timeout takes a number of seconds");
    result.timeout = *timeout;
    if (parser.isSet("for")) {
        result.duration = seconds(parser.value("for"));
        if (!result.duration) return refuse("--for takes a number of seconds");
    }
    if (parser.isSet("flags")) {
        const auto flags = wholeNumber(parser.value("flags"), 0, 31);
        if (!flags) return refuse("--flags takes a number from 0 to 31");
        result.flags = static_cast<std::int32_t>(*flags);
    }
    if (row->operands > 0) {
        const auto aid = wholeNumber(words[1], 0, 254);
        if (!aid)
            return refuse("an AID is a number from 0 to 254, and not \"" + words[1].toStdString() + "\"");
        result.aid = *aid;
    }
    if (row->operands > 1) {
        result.value = words[2].toStdString();
        if (!torv::wholeTextFloatValue(result.value)) {
            return refuse("a value is a number, and not \"" + result.value + "\"");
        }
    }
    return result;
}

}  // namespace itorvctl
