#include "JSON/SBJsonWriter.h"

#include <algorithm>
#include <vector>

namespace torv {
namespace {

constexpr std::string_view escapedCharacters = "\"\\\b\t\n\f\r";
constexpr std::string_view lettersOfEscaped = "\"\\btnfr";

constexpr bool needsEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

void appendEscape(char c, std::string& out) {
    constexpr std::string_view digits = "0123456789abcdef";
    if (const auto row = escapedCharacters.find(c); row != std::string_view::npos) {
        out += '\\';
        out += lettersOfEscaped[row];
    } else {
        const auto byte = static_cast<unsigned char>(c);
        out += "\\u00";
        out += digits[byte >> 4U];
        out += digits[byte & 0x0FU];
    }
}

void appendText(std::string_view text, std::string& out) {
    out += '"';
    for (auto run = text.begin(); run != text.end();) {
        const auto end = std::find_if(run, text.end(), needsEscape);
        out.append(run, end);
        run = end;
        if (end != text.end()) appendEscape(*run++, out);
    }
    out += '"';
}

}  // namespace

std::optional<std::string> SBJsonWriter::stringWithObject(const Value& value) {
    if (value.dictionary() || value.array()) return stringWithFragment(value);
    start();
    fail(json_fault::notTopLevelType);
    return std::nullopt;
}

std::optional<std::string> SBJsonWriter::stringWithFragment(const Value& value) {
    start();
    std::string out;
    if (!appendValue(value, out)) return std::nullopt;
    return out;
}

bool SBJsonWriter::appendValue(const Value& value, std::string& out) {
    if (const auto* members = value.dictionary()) return appendDictionary(*members, out);
    if (const auto* elements = value.array()) return appendArray(*elements, out);
    if (value.data()) return fail(json_fault::unsupportedType, "Data");
    if (const auto* text = value.text()) {
        appendText(*text, out);
    } else if (const auto* number = value.number()) {
        out += number->stringValue();
    } else if (const auto* truth = value.truth()) {
        out += *truth ? "true" : "false";
    } else {
        out += "null";
    }
    return true;
}

bool SBJsonWriter::appendArray(const Array& elements, std::string& out) {
    if (!enter()) return false;
    out += '[';
    for (const auto& element : elements) {
        if (&element != &elements.front()) out += ',';
        appendLineBreak(out);
        if (!appendValue(element, out)) return false;
    }
    leave();
    if (!elements.empty()) appendLineBreak(out);
    out += ']';
    return true;
}

bool SBJsonWriter::appendDictionary(const Dictionary& members, std::string& out) {
    if (!enter()) return false;
    std::vector<const Dictionary::Member*> ordered;
    ordered.reserve(members.size());
    for (const auto& member : members)
        ordered.push_back(&member);
    if (m_sortKeys) {
        std::ranges::sort(ordered, {}, [](const auto* member) -> const std::string& { return member->key; });
    }
    out += '{';
    for (const auto* member : ordered) {
        if (member != ordered.front()) out += ',';
        appendLineBreak(out);
        if (!appendMember(*member, out)) return fail(json_fault::unsupportedValueForKey, member->key);
    }
    leave();
    if (!members.empty()) appendLineBreak(out);
    out += '}';
    return true;
}

bool SBJsonWriter::appendMember(const Dictionary::Member& member, std::string& out) {
    appendText(member.key, out);
    out += m_humanReadable ? " : " : ":";
    return appendValue(member.value, out);
}

void SBJsonWriter::appendLineBreak(std::string& out) const {
    constexpr std::size_t blanksPerLevel = 2;
    if (!m_humanReadable) return;
    out += '\n';
    out.append(blanksPerLevel * static_cast<std::size_t>(depth()), ' ');
}

}  // namespace torv
