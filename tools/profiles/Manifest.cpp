#include "Manifest.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <map>
#include <system_error>

#include "JSON/SBJsonWriter.h"
#include "ProfileChecker.h"
#include "vehicles/ProfileDocument.h"

namespace profiles {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> documentsIn(const fs::path& folder, Faults& faults) {
    std::vector<fs::path> files;
    std::error_code code;
    for (fs::directory_iterator at{folder, code}, end; !code && at != end; at.increment(code)) {
        const auto name = at->path().filename().string();
        if (at->path().extension() == ".json" && name != manifestName) files.push_back(at->path());
    }
    faults.begin(folder.string());
    if (code) {
        faults.add("", code.message());
    } else if (files.empty()) {
        faults.add("", "holds no profile document, no file NAME.json");
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string urlEncoded(const std::string& name) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (plain.find(c) != std::string_view::npos) {
            text += c;
        } else {
            text.append({'%', digits[byte >> 4U], digits[byte & 15U]});
        }
    }
    return text;
}

std::optional<torv::Vehicle> profileIn(const fs::path& file, Faults& faults) {
    faults.begin(file.string());
    std::error_code code;
    if (!fs::is_regular_file(file, code)) {  // a pipe would be waited for
        faults.add("", code ? code.message() : "is not a file");
        return std::nullopt;
    }
    std::string error;
    auto vehicle = torv::vehicleFromFile(file, error);
    if (!vehicle) {
        const auto begin = file.string() + ": ";
        faults.add("", error.starts_with(begin) ? error.substr(begin.size()) : error);
    }
    return vehicle;
}

}  // namespace

torv::Array manifestOfFolder(const fs::path& folder, const std::string& baseURL,
                             const torv::URLLoader& loader, Faults& faults) {
    torv::Array entries;
    std::map<std::string, std::string> firstFiles;
    const auto once = [&](const char* key, const torv::Vehicle::Text& text) {
        if (!text) return;
        const auto [first, isNew] = firstFiles.emplace(std::string{key} + ' ' + *text, faults.file());
        if (!isNew) faults.add(key, "\"" + *text + "\" is already in " + first->second);
    };
    for (const auto& file : documentsIn(folder, faults)) {
        const auto vehicle = profileIn(file, faults);
        if (!vehicle) continue;
        ProfileChecker{faults, loader, baseURL.empty()}.check(vehicle->info().document());
        const auto url = baseURL.empty()
                             ? vehicle->url()
                             : torv::Vehicle::Text{baseURL + '/' + urlEncoded(file.filename().string())};
        once("vehicle", vehicle->name());
        once("url", url);
        entries.push_back(torv::Dictionary{{"vehicle", vehicle->name().value_or("")},
                                           {"url", url.value_or("")},
                                           {"version", vehicle->version().value_or("")},
                                           {"DTC", vehicle->DTC().value_or("NO")}});
    }
    return entries;
}

bool writeManifest(const fs::path& folder, const torv::Array& entries, std::string& error) {
    torv::SBJsonWriter writer;
    writer.setHumanReadable(true);
    const auto text = writer.stringWithObject(entries).value_or("[]") + '\n';
    const auto target = folder / manifestName;
    const auto fresh = folder / (std::string{manifestName} + ".new");
    std::ofstream stream{fresh, std::ios::binary};
    stream << text;
    stream.close();
    if (!stream) {
        error = fresh.string() + ": " + std::error_code{errno, std::generic_category()}.message();
    } else {
        std::error_code code;
        fs::rename(fresh, target, code);
        if (!code) return true;
        error = target.string() + ": " + code.message();
    }
    std::error_code ignored;
    fs::remove(fresh, ignored);
    return false;
}

}  // namespace profiles
