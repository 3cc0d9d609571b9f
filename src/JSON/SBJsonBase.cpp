#include "JSON/SBJsonBase.h"

#include <algorithm>

namespace torv {

void SBJsonBase::addErrorWithCodeDescription(int code, std::string description) {
    JSONError error{.code = code, .description = std::move(description), .underlying = nullptr};
    if (!m_errorTrace.empty()) error.underlying = std::make_shared<const JSONError>(m_errorTrace.back());
    m_errorTrace.push_back(std::move(error));
}

bool SBJsonBase::fail(const JSONFault& fault, std::string_view argument) {
    std::string description{fault.text};
    if (const auto place = description.find('%'); place != std::string::npos) {
        description.replace(place, 2, argument);
    }
    addErrorWithCodeDescription(fault.code, std::move(description));
    return false;
}

void SBJsonBase::start() {
    m_errorTrace.clear();
    m_depth = 0;
}

bool SBJsonBase::enter() {
    const auto limit = m_maxDepth == 0 ? deepest : std::min(m_maxDepth, deepest);
    return ++m_depth <= limit || fail(json_fault::nestedTooDeep);
}

}  // namespace torv
