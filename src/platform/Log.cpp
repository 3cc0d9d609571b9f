#include "platform/Log.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

namespace torv {
namespace {

std::mutex& sinkMutex() {
    static std::mutex mutex;
    return mutex;
}

std::shared_ptr<const LogSink>& currentSink() {
    static std::shared_ptr<const LogSink> sink;
    return sink;
}

}  // namespace

void logLine(std::string_view line) {
    std::shared_ptr<const LogSink> sink;
    {
        const std::scoped_lock lock{sinkMutex()};
        sink = currentSink();
    }
    if (sink && *sink) (*sink)(line);
}

void failAssertion(std::string_view text) {
    logLine(text);
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    std::abort();
}

void setLogSink(LogSink sink) {
    const std::scoped_lock lock{sinkMutex()};
    currentSink() = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
}

}  // namespace torv
