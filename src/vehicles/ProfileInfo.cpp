#include "vehicles/ProfileInfo.h"

#include <utility>

#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"

namespace torv {

struct ProfileInfo::Content {
    std::once_flag once;
    bool hasDocument = false;
    Dictionary document;
    std::string text;
};

ProfileInfo::ProfileInfo(Dictionary document) {
    if (document.empty()) return;
    m_content = std::make_shared<Content>();
    m_content->document = std::move(document);
    m_content->hasDocument = true;
}

ProfileInfo::ProfileInfo(std::string text) {
    if (text.empty()) return;
    m_content = std::make_shared<Content>();
    m_content->text = std::move(text);
}

bool ProfileInfo::empty() const {
    return !m_content;
}

const Dictionary& ProfileInfo::document() const {
    static const Dictionary none;
    if (!m_content) return none;
    auto& content = *m_content;
    if (content.hasDocument) return content.document;
    std::call_once(content.once, [&content] {
        auto value = SBJsonParser{}.objectWithString(content.text);
        if (value && value->dictionary()) content.document = std::move(*value->dictionary());
    });
    return content.document;
}

const std::string& ProfileInfo::text() const {
    static const std::string none;
    if (!m_content) return none;
    auto& content = *m_content;
    if (!content.hasDocument) return content.text;
    std::call_once(content.once, [&content] {
        content.text = SBJsonWriter{}.stringWithObject(content.document).value_or(std::string{});
    });
    return content.text;
}

}  // namespace torv
