#include "JSON/SBJSON.h"

namespace torv {

std::optional<Value> SBJSON::objectWithString(std::optional<std::string_view> text) {
    return objectWithStringAllowScalarError(text, false, nullptr);
}

std::optional<Value> SBJSON::objectWithStringError(std::optional<std::string_view> text, JSONError* error) {
    return objectWithStringAllowScalarError(text, false, error);
}

std::optional<Value> SBJSON::fragmentWithStringError(std::optional<std::string_view> text, JSONError* error) {
    return objectWithStringAllowScalarError(text, true, error);
}

std::optional<Value> SBJSON::objectWithStringAllowScalarError(std::optional<std::string_view> text,
                                                              bool allowScalar, JSONError* error) {
    m_parser.setMaxDepth(maxDepth());
    auto value = allowScalar ? m_parser.fragmentWithString(text) : m_parser.objectWithString(text);
    takeTrace(m_parser, error);
    return value;
}

std::optional<std::string> SBJSON::stringWithObject(const Value& value) {
    return stringWithObjectAllowScalarError(value, false, nullptr);
}

std::optional<std::string> SBJSON::stringWithObjectError(const Value& value, JSONError* error) {
    return stringWithObjectAllowScalarError(value, false, error);
}

std::optional<std::string> SBJSON::stringWithFragmentError(const Value& value, JSONError* error) {
    return stringWithObjectAllowScalarError(value, true, error);
}

std::optional<std::string> SBJSON::stringWithObjectAllowScalarError(const Value& value, bool allowScalar,
                                                                    JSONError* error) {
    m_writer.setMaxDepth(maxDepth());
    auto text = allowScalar ? m_writer.stringWithFragment(value) : m_writer.stringWithObject(value);
    takeTrace(m_writer, error);
    return text;
}

void SBJSON::takeTrace(const SBJsonBase& inner, JSONError* error) {
    setErrorTrace(inner.errorTrace());
    if (error && !errorTrace().empty()) *error = errorTrace().back();
}

}  // namespace torv
