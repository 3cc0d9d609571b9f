#include "platform/URLData.h"

#include <utility>

#include "platform/Log.h"
#include "platform/Platform.h"

namespace torv {
namespace {

constexpr int lastGoodStatus = 399;

}  // namespace

std::optional<Data> dataOfURL(const std::string& url) {
    auto reply = Platform::current().urlLoader().load(url);
    if (reply.status && *reply.status > lastGoodStatus) {
        logLine(url + " was answered with the status " + std::to_string(*reply.status));
        return std::nullopt;
    }
    if (!reply.body) logLine(url + " could not be fetched: " + reply.error);
    return std::move(reply.body);
}

}  // namespace torv
