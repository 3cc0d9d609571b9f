#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "support/Value.h"

namespace torv {

/// A profile document as text or as the dictionary it holds; either is made from the other when it is first
/// asked for. A list of two hundred stored profiles is read without parsing one of them.
///
/// A cheap copy shares the document. Any thread.
class ProfileInfo final {
public:
    /// No document.
    ProfileInfo() = default;
    explicit ProfileInfo(Dictionary document);
    explicit ProfileInfo(std::string text);

    [[nodiscard]] bool empty() const;
    /// Empty for a text that holds no dictionary.
    [[nodiscard]] const Dictionary& document() const;
    [[nodiscard]] const std::string& text() const;

private:
    struct Content;

    std::shared_ptr<Content> m_content;
};

}  // namespace torv
