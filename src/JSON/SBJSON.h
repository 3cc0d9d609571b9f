#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "JSON/SBJsonBase.h"
#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"
#include "support/Value.h"

namespace torv {

/// Reader and writer in one, with one set of options. One object is not for two threads at once.
///
/// Results are nothing on error; `error`, where it is not null, then receives the outermost error.
/// `allowScalar` admits any value where otherwise only a dictionary or a list is.
class SBJSON final : public SBJsonBase {
public:
    [[nodiscard]] bool humanReadable() const { return m_writer.humanReadable(); }
    void setHumanReadable(bool on) { m_writer.setHumanReadable(on); }
    [[nodiscard]] bool sortKeys() const { return m_writer.sortKeys(); }
    void setSortKeys(bool on) { m_writer.setSortKeys(on); }

    std::optional<Value> objectWithString(std::optional<std::string_view> text);
    std::optional<Value> objectWithStringError(std::optional<std::string_view> text, JSONError* error);
    std::optional<Value> fragmentWithStringError(std::optional<std::string_view> text, JSONError* error);
    std::optional<Value> objectWithStringAllowScalarError(std::optional<std::string_view> text,
                                                          bool allowScalar, JSONError* error);

    std::optional<std::string> stringWithObject(const Value& value);
    std::optional<std::string> stringWithObjectError(const Value& value, JSONError* error);
    std::optional<std::string> stringWithFragmentError(const Value& value, JSONError* error);
    std::optional<std::string> stringWithObjectAllowScalarError(const Value& value, bool allowScalar,
                                                                JSONError* error);

private:
    void takeTrace(const SBJsonBase& inner, JSONError* error);

    SBJsonParser m_parser;
    SBJsonWriter m_writer;
};

}  // namespace torv
