#include "platform/real/CurlURLLoader.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <array>
#include <memory>
#include <optional>

#include "platform/Log.h"

namespace torv {
namespace {

constexpr long connectSeconds = 10;
constexpr long mostRedirects = 5;
constexpr auto protocols = "http,https";

/// libcurl, loaded with the first request: it brings thirty libraries with it, and most starts of the
/// program fetch nothing. Never unloaded, because some of those can't be.
struct Curl {
    decltype(&curl_global_init) globalInit = nullptr;
    decltype(&curl_easy_init) init = nullptr;
    decltype(&curl_easy_cleanup) cleanup = nullptr;
    decltype(&curl_easy_setopt) setopt = nullptr;
    decltype(&curl_easy_perform) perform = nullptr;
    decltype(&curl_easy_getinfo) getinfo = nullptr;
    decltype(&curl_easy_strerror) errorText = nullptr;
    decltype(&curl_url) url = nullptr;
    decltype(&curl_url_cleanup) urlCleanup = nullptr;
    decltype(&curl_url_set) urlSet = nullptr;
    decltype(&curl_url_get) urlGet = nullptr;
    decltype(&curl_free) free = nullptr;
};

template <class Function>
bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

std::optional<Curl> loadCurl() {
    auto* const library = ::dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
    Curl c;
    const bool whole =
        library && find(library, "curl_global_init", c.globalInit) &&
        find(library, "curl_easy_init", c.init) && find(library, "curl_easy_cleanup", c.cleanup) &&
        find(library, "curl_easy_setopt", c.setopt) && find(library, "curl_easy_perform", c.perform) &&
        find(library, "curl_easy_getinfo", c.getinfo) && find(library, "curl_easy_strerror", c.errorText) &&
        find(library, "curl_url", c.url) && find(library, "curl_url_cleanup", c.urlCleanup) &&
        find(library, "curl_url_set", c.urlSet) && find(library, "curl_url_get", c.urlGet) &&
        find(library, "curl_free", c.free);
    if (!whole || c.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) return std::nullopt;
    return c;
}

const std::optional<Curl>& sharedCurl() {
    static const auto curl = loadCurl();
    return curl;
}

struct Body {
    Data bytes;
    std::size_t most;
};

std::size_t append(const char* bytes, std::size_t size, std::size_t count, void* target) {
    auto& body = *static_cast<Body*>(target);
    const auto length = size * count;
    if (body.bytes.size() + length > body.most) return 0;
    body.bytes.insert(body.bytes.end(), bytes, bytes + length);
    return length;
}

/// Called about once a second and with whatever comes; anything but 0 ends the request.
int progress(void* cancelled, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<const std::atomic<bool>*>(cancelled)->load() ? 1 : 0;
}

}  // namespace

bool CurlURLLoader::accepts(const std::string& url) const {
    const auto& curl = sharedCurl();
    if (!curl) {
        logLine("libcurl is not installed, and no address can be used");
        return false;
    }
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> parts{curl->url(), curl->urlCleanup};
    if (!parts || curl->urlSet(parts.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK) return false;
    const auto part = [&](CURLUPart which) {
        char* text = nullptr;
        if (curl->urlGet(parts.get(), which, &text, 0) != CURLUE_OK) return std::string{};
        const std::unique_ptr<char, decltype(&curl_free)> owned{text, curl->free};
        return std::string{text};
    };
    const auto scheme = part(CURLUPART_SCHEME);
    return (scheme == "http" || scheme == "https") && !part(CURLUPART_HOST).empty();
}

URLLoader::Reply CurlURLLoader::load(const std::string& url) {
    const auto& curl = sharedCurl();
    if (!curl) return {.body = {}, .status = {}, .error = "libcurl is not installed"};
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle{curl->init(), curl->cleanup};
    if (!handle) return {.body = {}, .status = {}, .error = "libcurl could not be started"};
    Body body{.bytes = {}, .most = m_limits.bytes};
    std::array<char, CURL_ERROR_SIZE> message{};
    CURLcode result = CURLE_OK;
    // An older library may not know an option; without one of these nothing is fetched.
    const auto set = [&](CURLoption option, auto value) {
        if (result == CURLE_OK) result = curl->setopt(handle.get(), option, value);
    };
    set(CURLOPT_ERRORBUFFER, message.data());
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_PROTOCOLS_STR, protocols);
    set(CURLOPT_REDIR_PROTOCOLS_STR, protocols);
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, mostRedirects);
    set(CURLOPT_CONNECTTIMEOUT, connectSeconds);
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(m_limits.time.count()));
    set(CURLOPT_MAXFILESIZE, static_cast<long>(m_limits.bytes));
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_ACCEPT_ENCODING, "");
    set(CURLOPT_WRITEFUNCTION, &append);
    set(CURLOPT_WRITEDATA, &body);
    set(CURLOPT_XFERINFOFUNCTION, &progress);
    set(CURLOPT_XFERINFODATA, &m_cancelled);
    set(CURLOPT_NOPROGRESS, 0L);
    if (result == CURLE_OK) result = curl->perform(handle.get());
    long status = 0;
    curl->getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
    Reply reply;
    if (status != 0) reply.status = static_cast<int>(status);
    if (result == CURLE_OK) {
        reply.body = std::move(body.bytes);
    } else if (result == CURLE_WRITE_ERROR || result == CURLE_FILESIZE_EXCEEDED) {
        reply.error = "it is larger than " + std::to_string(m_limits.bytes >> 20U) + " MiB";
    } else {
        reply.error = message[0] != '\0' ? message.data() : curl->errorText(result);
    }
    return reply;
}

}  // namespace torv
