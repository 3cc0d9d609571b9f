#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "JSON/JSONError.h"

namespace torv {

/// What reader, writer and facade share: the trace of errors and the limit of nesting. One object is
/// not for two threads at once.
class SBJsonBase {
public:
    /// Reading, writing, copying, comparing and destroying a nested value all recurse. This many levels fit
    /// a stack of 8 MB even in an unoptimised, instrumented build, and no document may pass them.
    static constexpr std::uint64_t deepest = 2048;

    /// Empty after a success; else the cause first and the outermost error last.
    [[nodiscard]] const std::vector<JSONError>& errorTrace() const { return m_errorTrace; }

    [[nodiscard]] std::uint64_t maxDepth() const { return m_maxDepth; }
    /// Levels of nesting that are accepted; 0 means no limit other than `deepest`.
    void setMaxDepth(std::uint64_t levels) { m_maxDepth = levels; }

protected:
    SBJsonBase() = default;
    ~SBJsonBase() = default;
    SBJsonBase(const SBJsonBase&) = default;
    SBJsonBase(SBJsonBase&&) = default;
    SBJsonBase& operator=(const SBJsonBase&) = default;
    SBJsonBase& operator=(SBJsonBase&&) = default;

    /// The error before this one becomes the underlying error of this one.
    void addErrorWithCodeDescription(int code, std::string description);
    /// Adds a row of the table with its argument put in; always false, for `return fail(...)`.
    bool fail(const JSONFault& fault, std::string_view argument = {});
    void setErrorTrace(std::vector<JSONError> trace) { m_errorTrace = std::move(trace); }
    /// Forgets the errors and the depth of the call before.
    void start();

    /// One level down; false and an error if that is too deep.
    [[nodiscard]] bool enter();
    void leave() { --m_depth; }
    [[nodiscard]] std::uint64_t depth() const { return m_depth; }

private:
    std::vector<JSONError> m_errorTrace;
    std::uint64_t m_maxDepth = 512;
    std::uint64_t m_depth = 0;
};

}  // namespace torv
