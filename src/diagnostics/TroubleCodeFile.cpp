#include "diagnostics/TroubleCodeFile.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "diagnostics/TroubleCodeReport.h"
#include "platform/Platform.h"

namespace torv {

std::optional<std::filesystem::path> saveTroubleCodes(const std::string& document,
                                                      std::chrono::system_clock::time_point now,
                                                      std::string& error) {
    const auto folder = Platform::current().resources().documentsDirectory();
    auto name = "trouble-codes " + minuteText(now);
    std::ranges::replace(name, ':', '.');  // other systems take no colon
    std::ranges::replace(name, ' ', '-');
    std::error_code ignored;  // the file tells
    std::filesystem::create_directories(folder, ignored);
    auto file = folder / (name + ".txt");
    for (int number = 2; std::filesystem::exists(file, ignored); ++number)
        file = folder / (name + "-" + std::to_string(number) + ".txt");
    std::ofstream stream{file, std::ios::binary};
    stream << document;
    stream.close();
    if (stream) return file;
    error = file.string() + " could not be written";
    std::filesystem::remove(file, ignored);
    return std::nullopt;
}

}  // namespace torv
