#pragma once

#include "platform/URLLoader.h"

namespace torv {

/// HTTP and HTTPS by libcurl. At most 60 s and 16 MiB a document, at most 5 redirects, and no other
/// protocol, redirects included: a manifest must not make the handset read its own files.
class CurlURLLoader final : public URLLoader {
public:
    CurlURLLoader();
    ~CurlURLLoader() override;

    [[nodiscard]] Reply load(const std::string& url) override;
};

}  // namespace torv
