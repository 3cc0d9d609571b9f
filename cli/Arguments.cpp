#include "Arguments.h"

#include <QCommandLineParser>
#include <algorithm>
#include <array>

#include "datalog/RecordingExport.h"
#include "platform/real/CurlURLLoader.h"
#include "support/TextNumbers.h"

namespace itorvctl {
namespace {

constexpr auto description =
    "Talks to the tuning module from a terminal.\n"
    "\n"
    "Commands:\n"
    "  watch           show all sensors live: a table on a terminal, else a line for each update\n"
    "  get AID         ask the module for one value and show it\n"
    "  set AID VALUE   write one setting or tuning item, in its own unit, and say whether it was "
    "acknowledged\n"
    "  settings        list the stored settings, and whether the module has the same\n"
    "  settings set NAME VALUE\n"
    "                  change a setting as its screen does: VALUE is a number, on, off, or one of its "
    "choices\n"
    "  warnings [NAME [VALUE|on|off]]\n"
    "                  list the warnings of the sensors, or change one\n"
    "  profiles        list the tuning profiles, the active one with a star\n"
    "  profiles show NAME\n"
    "  profiles diff NAME OTHER|--live\n"
    "                  show its values, or only those that differ from another one's or the module's\n"
    "  profiles activate NAME\n"
    "                  push it into the module, and say which values the module has not taken\n"
    "  profiles export NAME FILE\n"
    "  profiles import FILE [NAME]\n"
    "                  write it as a document, or make one of a document\n"
    "  profiles delete NAME\n"
    "  frames [FILE]   show every frame in both directions, decoded; or those of a capture\n"
    "  check           measure the link, and compare what the module does with docs/link.md: asks for "
    "values,\n"
    "                  and writes settings and tuning items back as they are\n"
    "  record FILE     record every value of every sensor until it is interrupted\n"
    "  export FILE [OUTPUT]\n"
    "                  a recording as another file, or on the standard output stream; see --format\n"
    "  codes           read the module's trouble codes, with their texts\n"
    "  codes clear     clear them; asks first on a terminal, and wants --yes elsewhere\n"
    "  vehicles        list the current, stored and remote vehicle profiles\n"
    "  vehicles use NAME\n"
    "                  make a stored profile the current one\n"
    "  vehicles update NAME\n"
    "                  download a profile from the update server\n"
    "  defaults        list the keys of what is stored on this handset\n"
    "  defaults get KEY\n"
    "  defaults set KEY VALUE\n"
    "                  show one of them as text\n"
    "  names settings|sensors|profiles|vehicles\n"
    "                  list them, one a line\n"
    "\n"
    "What set writes lasts until itorv connects the next time: that brings back what it has stored.\n"
    "With --store a setting is stored too, and a tuning item in the active tuning profile. The default\n"
    "profile holds no values, so that nothing can be stored in it.\n"
    "\n"
    "Exit codes: 0 done, 1 the module did not answer, or something could not be stored, 2 bad arguments\n"
    "or profile, 3 no connection, 4 the update server could not be asked, or the module has not taken\n"
    "a value of a tuning profile, 5 check has found something.\n"
    "\n"
    "Examples:\n"
    "  itorvctl watch --module 127.0.0.1:2000\n"
    "  itorvctl watch --json --for 5 | head\n"
    "  itorvctl get 78\n"
    "  itorvctl set 95 3200";

struct CommandRow {
    const char* name;
    const char* verb;  ///< the first word behind the name; null where any word is an operand
    Command command;
    int operands;  ///< behind name and verb
    int most = operands;
};
constexpr std::array<CommandRow, 27> commands{{
    {"watch", nullptr, Command::watch, 0},
    {"get", nullptr, Command::get, 1},
    {"set", nullptr, Command::set, 2},
    {"frames", nullptr, Command::frames, 0, 1},
    {"check", nullptr, Command::check, 0},
    {"names", nullptr, Command::names, 1},
    {"record", nullptr, Command::record, 1},
    {"export", nullptr, Command::exportRecording, 1, 2},
    {"codes", "clear", Command::codes, 0},
    {"codes", nullptr, Command::codes, 0},
    {"settings", "set", Command::settings, 2},
    {"settings", nullptr, Command::settings, 0},
    {"profiles", "list", Command::profiles, 0},
    {"profiles", "show", Command::profiles, 1},
    {"profiles", "diff", Command::profiles, 1, 2},
    {"profiles", "activate", Command::profiles, 1},
    {"profiles", "export", Command::profiles, 2},
    {"profiles", "import", Command::profiles, 1, 2},
    {"profiles", "delete", Command::profiles, 1},
    {"profiles", nullptr, Command::profiles, 0},
    {"warnings", nullptr, Command::warnings, 0, 2},
    {"vehicles", "use", Command::vehicles, 1},
    {"vehicles", "update", Command::vehicles, 1},
    {"vehicles", nullptr, Command::vehicles, 0},
    {"defaults", "get", Command::defaults, 1},
    {"defaults", "set", Command::defaults, 2},
    {"defaults", nullptr, Command::defaults, 0},
}};

bool usesLink(Command command) {
    constexpr std::array stored{Command::exportRecording, Command::vehicles, Command::defaults,
                                Command::warnings, Command::names};
    return std::ranges::find(stored, command) == stored.end();
}

/// Options that only some commands take.
struct OptionRow {
    const char* name;
    bool (*goesWith)(Command);
};
constexpr std::array<OptionRow, 11> someOptions{{
    {"json",
     [](Command c) {
         return c != Command::defaults && c != Command::exportRecording && c != Command::names;
     }},
    {"for",
     [](Command c) {
         return c == Command::watch || c == Command::frames || c == Command::record || c == Command::check;
     }},
    {"capture", &usesLink},
    {"try-writes", [](Command c) { return c == Command::check; }},
    {"format", [](Command c) { return c == Command::exportRecording; }},
    {"flags", [](Command c) { return c == Command::set; }},
    {"force", [](Command c) { return c == Command::set || c == Command::profiles || c == Command::check; }},
    {"live", [](Command c) { return c == Command::profiles; }},
    {"new-list", [](Command c) { return c == Command::profiles; }},
    {"store", [](Command c) { return c == Command::set; }},
    {"yes", [](Command c) { return c == Command::codes; }},
}};

bool fits(const CommandRow& row, const QStringList& words) {
    if (words.first() != QLatin1String{row.name}) return false;
    return !row.verb || (words.size() > 1 && words[1] == QLatin1String{row.verb});
}

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

/// Takes the place of the hyphen of negative numbers, which Qt would take for options.
constexpr QChar minusSign{u'\u2212'};

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
    parser.addPositionalArgument("command", "see above", "COMMAND [...]");
    torv::CommonOptions::addTo(parser, "Use this vehicle profile document.");
    parser.addOptions({
        {"json", "One JSON object a line; all commands but defaults, export and names."},
        {"timeout", "Seconds to wait for the module (10).", "SECONDS", "10"},
        {"for",
         "End so many seconds after the module was found; watch, frames and record go on without, check "
         "takes "
         "ten.",
         "SECONDS"},
        {"flags", "State bits to write with the value (set): 1 off, 2 on, 4 third, 8/16 second off/on.",
         "NUMBER"},
        {"format",
         "What export makes: csv, one time axis and a column for each sensor; log, as the data log has it; "
         "jsonl, an object a line.",
         "FORMAT", "csv"},
        {"force",
         "Write (set) what the profile tells of and is neither a setting nor a tuning item; import "
         "(profiles) under a name that itorv uses itself; try writes (check) while the engine turns."},
        {"try-writes",
         "Also write (check) another value to each setting and tuning item, see that it is kept and sent "
         "back, and "
         "write the old one again. Not while the engine turns."},
        {"live", "Compare (profiles diff) with what the module holds."},
        {"new-list", "Put a list that can't be read aside (profiles list), and begin one of what is stored."},
        {"store", "Store what was written (set), so that itorv brings it back."},
        {"yes", "Clear (codes clear) without a question, also while the engine turns."},
        {"verbose", "Say on the standard error stream what goes on."},
    });
    auto passed = arguments;
    for (auto& argument : passed) {
        if (argument.size() > 1 && argument[0] == u'-' && (argument[1].isDigit() || argument[1] == u'.'))
            argument[0] = minusSign;
    }
    if (!parser.parse(passed)) return refuse(parser.errorText().toStdString());
    if (parser.isSet("help")) parser.showHelp(0);
    if (parser.isSet("version")) parser.showVersion();

    const auto words = parser.positionalArguments().replaceInStrings(QString{minusSign}, QStringLiteral("-"));
    if (words.isEmpty()) return refuse("a command is missing; see --help");
    const auto row =
        std::find_if(commands.begin(), commands.end(), [&](const CommandRow& c) { return fits(c, words); });
    if (row == commands.end()) return refuse("there is no command \"" + words.first().toStdString() + "\"");
    const int before = row->verb ? 2 : 1;
    if (words.size() - before < row->operands || words.size() - before > row->most) {
        return refuse(std::string{row->name} + (row->verb ? std::string{" "} + row->verb : "") + " takes " +
                      (row->most > row->operands ? "at most " : "") + std::to_string(row->most) +
                      (row->most == 1 ? " argument" : " arguments") + "; see --help");
    }

    for (const auto& option : someOptions) {
        if (parser.isSet(option.name) && !option.goesWith(row->command))
            return refuse(std::string{row->name} + " takes no --" + option.name + "; see --help");
    }

    Arguments result;
    result.command = row->command;
    for (const auto& word : words.mid(1))
        result.words.push_back(word.toStdString());
    if (parser.isSet("yes") && result.words.empty()) return refuse("codes takes --yes with clear only");
    result.live = parser.isSet("live");
    if (!result.words.empty() && result.words[0] == "diff" && result.live == (result.words.size() > 2))
        return refuse("profiles diff takes either another profile or --live");
    const auto verb = result.words.empty() ? std::string{} : result.words[0];
    if (row->command == Command::profiles && result.live && verb != "diff")
        return refuse("profiles takes --live with diff only");
    if (row->command == Command::profiles && parser.isSet("force") && verb != "import")
        return refuse("profiles takes --force with import only");
    if (row->command == Command::check && parser.isSet("force") && !parser.isSet("try-writes"))
        return refuse("check takes --force with --try-writes only");
    if (row->command == Command::frames && !result.words.empty()) {
        for (const auto* option : {"module", "interface", "for", "capture"}) {
            if (parser.isSet(option))
                return refuse(std::string{"frames takes no --"} + option + " with a file");
        }
    }
    result.newList = parser.isSet("new-list");
    if (result.newList && verb != "list") return refuse("profiles takes --new-list with list only");
    if (auto why = result.common.read(parser, torv::CurlURLLoader{})) return refuse(std::move(*why));
    result.json = parser.isSet("json");
    result.verbose = parser.isSet("verbose");
    result.force = parser.isSet("force");
    result.store = parser.isSet("store");
    result.yes = parser.isSet("yes");
    result.tryWrites = parser.isSet("try-writes");
    result.format = parser.value("format").toStdString();
    if (std::ranges::find(torv::recordingFormats, result.format, &torv::RecordingFormat::name) ==
        torv::recordingFormats.end())
        return refuse("--format takes csv, log or jsonl, and not \"" + result.format + "\"");
    const auto timeout = seconds(parser.value("timeout"));
    if (!timeout) return refuse("--timeout takes a number of seconds");
    result.timeout = *timeout;
    if (parser.isSet("for")) {
        result.duration = seconds(parser.value("for"));
        if (!result.duration) return refuse("--for takes a number of seconds");
        if (row->command == Command::check && *result.duration < std::chrono::seconds{1})
            return refuse("check takes at least a second");
    }
    if (parser.isSet("flags")) {
        const auto flags = wholeNumber(parser.value("flags"), 0, 31);
        if (!flags) return refuse("--flags takes a number from 0 to 31");
        result.flags = static_cast<std::int32_t>(*flags);
    }
    if (row->command == Command::get || row->command == Command::set) {
        const auto aid = wholeNumber(words[1], 0, 254);
        if (!aid)
            return refuse("an AID is a number from 0 to 254, and not \"" + words[1].toStdString() + "\"");
        result.aid = *aid;
    }
    if (row->command == Command::set) {
        result.value = words[2].toStdString();
        if (!torv::wholeTextFloatValue(result.value)) {
            return refuse("a value is a number, and not \"" + result.value + "\"");
        }
    }
    return result;
}

}  // namespace itorvctl
