#pragma once

#include <optional>
#include <string>

#include "support/Value.h"

namespace torv {

/// Fetches what a URL names, in one blocking call.
class URLLoader {
public:
    struct Reply {
        std::optional<Data> body;   ///< nothing when the request failed
        std::optional<int> status;  ///< of HTTP; nothing when there was no answer
        std::string error;          ///< why there is no body, for the log
    };

    URLLoader() = default;
    URLLoader(const URLLoader&) = delete;
    URLLoader& operator=(const URLLoader&) = delete;
    virtual ~URLLoader() = default;

    /// Whether it is an address from which `load` fetches: HTTP or HTTPS, with a host. Any thread.
    [[nodiscard]] virtual bool accepts(const std::string& url) const = 0;
    /// Any thread. Comes back in limited time and with a body of limited size.
    [[nodiscard]] virtual Reply load(const std::string& url) = 0;
    /// The program ends: what is under way ends soon without a body, and so does all that comes. Any thread.
    virtual void cancel() {}
};

}  // namespace torv
