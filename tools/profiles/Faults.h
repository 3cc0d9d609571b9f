#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace profiles {

/// What is wrong, a line each: "FILE: PLACE: sentence". No document can bring a line break or a terminal
/// sequence into one.
class Faults final {
public:
    /// What is added from here on is about this file.
    void begin(std::string file) { m_file = std::move(file); }
    /// An empty place stands for the whole file.
    void add(std::string_view place, std::string_view sentence) {
        auto line = m_file + ": ";
        if (!place.empty()) line.append(place).append(": ");
        line += sentence;
        std::replace_if(
            line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
        m_lines.push_back(std::move(line));
    }
    [[nodiscard]] const std::vector<std::string>& lines() const { return m_lines; }
    [[nodiscard]] const std::string& file() const { return m_file; }

private:
    std::string m_file;
    std::vector<std::string> m_lines;
};

}  // namespace profiles
