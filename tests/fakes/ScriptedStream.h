#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

#include "platform/ByteStream.h"
#include "platform/RunLoop.h"

namespace fakes {

using Bytes = std::vector<std::uint8_t>;

/// A stream whose other end is the test: chunks are fed one per read, and what is sent is recorded.
class ScriptedStream final : public torv::ByteStream, public std::enable_shared_from_this<ScriptedStream> {
public:
    ScriptedStream(torv::RunLoop& loop, torv::Endpoint to) : endpoint(std::move(to)), m_loop(loop) {}

    void setClient(Client client) override { m_client = std::move(client); }
    [[nodiscard]] bool open() override { return opens; }
    void close() override {
        closed = true;
        m_client = nullptr;
    }
    std::ptrdiff_t read(std::span<std::uint8_t> room) override {
        if (closed || m_chunks.empty()) return -1;
        const auto chunk = std::move(m_chunks.front());
        m_chunks.pop_front();
        const auto count = std::min(chunk.size(), room.size());
        std::copy_n(chunk.begin(), count, room.begin());
        return static_cast<std::ptrdiff_t>(count);
    }
    void rearm() override {
        m_armed = true;
        announce();
    }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override {
        if (failingWrites > 0) {
            --failingWrites;
            return -1;
        }
        sent.emplace_back(bytes.begin(), bytes.end());
        if (onWrite) onWrite(sent.back());
        return static_cast<std::ptrdiff_t>(bytes.size());
    }
    [[nodiscard]] bool canAcceptBytes() override { return !closed && accepts; }
    [[nodiscard]] Reach reach() const override { return Reach::open; }

    void feed(Bytes chunk) {
        m_chunks.push_back(std::move(chunk));
        announce();
    }
    void lose(Event event = Event::end) {
        m_loop.performOnMainThread([weak = weak_from_this(), event] {
            const auto stream = weak.lock();
            if (stream && stream->m_client) Client{stream->m_client}(event);
        });
    }

    const torv::Endpoint endpoint;
    bool opens = true;
    bool accepts = true;
    bool closed = false;
    int failingWrites = 0;
    std::vector<Bytes> sent;
    std::function<void(const Bytes&)> onWrite;

private:
    void announce() {
        if (!m_armed || m_chunks.empty()) return;
        m_armed = false;
        m_loop.performOnMainThread([weak = weak_from_this()] {
            const auto stream = weak.lock();
            if (stream && stream->m_client) Client{stream->m_client}(Event::bytesAvailable);
        });
    }

    torv::RunLoop& m_loop;
    Client m_client;
    std::deque<Bytes> m_chunks;
    bool m_armed = true;
};

}  // namespace fakes
