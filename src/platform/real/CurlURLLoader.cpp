#include "platform/real/CurlURLLoader.h"

#include <curl/curl.h>

#include <array>
#include <memory>

namespace torv {
namespace {

constexpr long connectSeconds = 10;
constexpr long mostRedirects = 5;
constexpr auto protocols = "http,https";

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

}  // namespace

CurlURLLoader::CurlURLLoader(Limits limits) : m_limits(limits) {
    curl_global_init(CURL_GLOBAL_DEFAULT);
}
CurlURLLoader::~CurlURLLoader() {
    curl_global_cleanup();
}

URLLoader::Reply CurlURLLoader::load(const std::string& url) {
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle{curl_easy_init(), &curl_easy_cleanup};
    if (!handle) return {.body = {}, .status = {}, .error = "libcurl could not be started"};
    Body body{.bytes = {}, .most = m_limits.bytes};
    std::array<char, CURL_ERROR_SIZE> message{};
    const auto set = [&](CURLoption option, auto value) { curl_easy_setopt(handle.get(), option, value); };
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
    set(CURLOPT_ERRORBUFFER, message.data());
    set(CURLOPT_WRITEFUNCTION, &append);
    set(CURLOPT_WRITEDATA, &body);
    const auto result = curl_easy_perform(handle.get());
    long status = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
    Reply reply;
    if (status != 0) reply.status = static_cast<int>(status);
    if (result == CURLE_OK) {
        reply.body = std::move(body.bytes);
    } else if (result == CURLE_WRITE_ERROR || result == CURLE_FILESIZE_EXCEEDED) {
        reply.error = "it is larger than " + std::to_string(m_limits.bytes >> 20U) + " MiB";
    } else {
        reply.error = message[0] != '\0' ? message.data() : curl_easy_strerror(result);
    }
    return reply;
}

}  // namespace torv
