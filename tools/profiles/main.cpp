// itorv-profiles: checks a folder of profile documents and makes the update manifest for it.
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

#include "Manifest.h"
#include "ProfileChecker.h"
#include "platform/real/CurlURLLoader.h"

namespace {

enum ExitCode : int { success = 0, faultsFound = 1, badArguments = 2 };

constexpr auto help =
    "Usage: itorv-profiles FOLDER [--base-url URL] [--check]\n"
    "\n"
    "Checks every vehicle profile FOLDER/*.json and writes the manifest FOLDER/update.json, so that any web\n"
    "server can serve the folder as /itorvv2/. Where something is wrong, says what, a line each, and writes\n"
    "nothing:\n"
    "  FILE: PLACE: what is wrong there\n"
    "\n"
    "  --base-url URL  the address of a document is URL/FILE, and not what its \"url\" says\n"
    "  --check         check only, write nothing\n"
    "  --help          show this\n"
    "  --version       show which version this is\n"
    "\n"
    "Exit codes: 0 all is well, 1 something is wrong, 2 bad arguments.\n";

struct Arguments {
    std::filesystem::path folder;
    std::string baseURL;
    bool checkOnly = false;
    bool help = false;
    bool version = false;
};

std::optional<Arguments> readArguments(std::span<char*> words, const torv::URLLoader& loader,
                                       std::string& error) {
    Arguments arguments;
    const auto refuse = [&](std::string why) -> std::optional<Arguments> {
        error = std::move(why);
        return std::nullopt;
    };
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (word == "--version") {
            arguments.version = true;
            return arguments;
        }
        if (word == "--help") {
            arguments.help = true;
            return arguments;
        }
        if (word == "--check") {
            arguments.checkOnly = true;
        } else if (word == "--base-url") {
            if (++i < words.size()) arguments.baseURL = words[i];
            while (arguments.baseURL.ends_with('/'))
                arguments.baseURL.pop_back();
            if (!loader.accepts(arguments.baseURL)) {
                return refuse("--base-url takes an address beginning with http:// or https://");
            }
        } else if (word.starts_with("-")) {
            return refuse("there is no option \"" + std::string{word} + "\"; see --help");
        } else if (!arguments.folder.empty()) {
            return refuse("one folder at a time; see --help");
        } else {
            arguments.folder = word;
        }
    }
    if (arguments.folder.empty()) return refuse("a folder is missing; see --help");
    std::error_code code;
    if (!std::filesystem::is_directory(arguments.folder, code)) {
        return refuse(arguments.folder.string() + ": " + (code ? code.message() : "is not a folder"));
    }
    return arguments;
}

}  // namespace

int main(int argc, char** argv) {
    std::string error;
    const torv::CurlURLLoader loader;
    const auto arguments =
        readArguments(std::span{argv, static_cast<std::size_t>(argc)}.subspan(1), loader, error);
    if (!arguments) {
        std::cerr << "itorv-profiles: " << error << '\n';
        return badArguments;
    }
    if (arguments->version) {
        std::cout << "itorv-profiles " ITORV_VERSION "\n";
        return 0;
    }
    if (arguments->help) {
        std::cout << help;
        return success;
    }
    profiles::Faults faults;
    const auto entries = profiles::manifestOfFolder(arguments->folder, arguments->baseURL, loader, faults);
    for (const auto& line : faults.lines())
        std::cerr << line << '\n';
    if (!faults.lines().empty()) return faultsFound;
    if (!arguments->checkOnly && !profiles::writeManifest(arguments->folder, entries, error)) {
        std::cerr << error << '\n';
        return faultsFound;
    }
    std::cout << entries.size() << (entries.size() == 1 ? " profile" : " profiles")
              << (arguments->checkOnly ? " checked\n" : " in update.json\n");
    return success;
}
