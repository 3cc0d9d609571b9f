#include "JSON/JSONValue.h"

#include "JSON/SBJsonParser.h"
#include "platform/Log.h"

namespace torv {
namespace {

std::string described(const std::vector<JSONError>& trace) {
    std::string line;
    for (const auto& error : trace) {
        line += line.empty() ? "(" : ", ";
        line.append(error.domain).append(" ").append(std::to_string(error.code));
        line.append(" \"").append(error.description).append("\"");
    }
    return line + ")";
}

/// Passes the result on, with a line in the log if there is none.
template <class Result>
Result logged(Result result, std::string_view operation, const SBJsonBase& worker) {
    if (!result) {
        std::string line{"-"};
        line.append(operation).append(" failed. Error trace is: ").append(described(worker.errorTrace()));
        logLine(line);
    }
    return result;
}

}  // namespace

std::optional<Value> JSONValue(std::string_view text) {
    SBJsonParser parser;
    return logged(parser.objectWithString(text), "JSONValue", parser);
}

std::optional<Value> JSONFragmentValue(std::string_view text) {
    SBJsonParser parser;
    return logged(parser.fragmentWithString(text), "JSONFragmentValue", parser);
}

std::optional<std::string> JSONRepresentation(const Value& value) {
    SBJsonWriter writer;
    return logged(writer.stringWithObject(value), "JSONRepresentation", writer);
}

std::optional<std::string> JSONFragment(const Value& value) {
    SBJsonWriter writer;
    return logged(writer.stringWithFragment(value), "JSONFragment", writer);
}

}  // namespace torv
