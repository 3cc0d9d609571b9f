#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include "fakes/WaitUntil.h"
#include "platform/real/PosixByteStream.h"
#include "platform/real/QtRunLoop.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using Event = ByteStream::Event;
using Reach = ByteStream::Reach;

/// The other end, on a port of its own on the loopback interface.
class StreamTest : public testing::Test {
protected:
    StreamTest() : listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
    }
    ~StreamTest() override {
        ::close(peer);
        ::close(listener);
    }

    void open() {
        stream = std::make_shared<PosixByteStream>(loop, Endpoint{"127.0.0.1", ntohs(address.sin_port)});
        stream->setClient([this](Event event) {
            events.push_back(event);
            std::array<std::uint8_t, 16> room{};
            if (event != Event::bytesAvailable) return;
            EXPECT_GT(stream->read(room), 0);
            stream->rearm();
        });
        ASSERT_TRUE(stream->open());
    }
    void accept() {
        ASSERT_EQ(::listen(listener, 1), 0);
        open();
        peer = ::accept(listener, nullptr, nullptr);
        ASSERT_TRUE(waitFor(Reach::open));
        EXPECT_TRUE(stream->canAcceptBytes());
    }
    bool waitFor(Reach reach) {
        return fakes::waitUntil(loop, [&] { return stream->reach() == reach; });
    }

    QtRunLoop loop;
    sockaddr_in address{};
    const int listener;
    int peer = -1;
    std::shared_ptr<PosixByteStream> stream;
    std::vector<Event> events;
};

TEST_F(StreamTest, WhatWasRefusedOrCutOffIsKnownAsSuchAndTakesNoBytes) {
    open();  // nobody listens
    EXPECT_EQ(stream->reach(), Reach::noAnswer);
    EXPECT_FALSE(stream->canAcceptBytes());
    EXPECT_TRUE(waitFor(Reach::refused));
    EXPECT_FALSE(stream->canAcceptBytes());
    EXPECT_EQ(std::exchange(events, {}), std::vector{Event::error});

    const auto nowhere = std::make_shared<PosixByteStream>(loop, Endpoint{"255.255.255.255", 1});
    EXPECT_FALSE(nowhere->open());
    EXPECT_EQ(nowhere->reach(), Reach::unreachable);

    accept();
    ::close(std::exchange(peer, -1));
    EXPECT_FALSE(stream->canAcceptBytes());  // before the loop has turned
    EXPECT_TRUE(waitFor(Reach::closed));
    EXPECT_FALSE(stream->canAcceptBytes());
    EXPECT_EQ(events, std::vector{Event::end});
}

/// The kernel may take data in without a look at the acks that they carry, as it does while nobody reads.
TEST_F(StreamTest, APeerThatSendsHasNotVanishedHoweverOldItsLastAckIs) {
    accept();
    stream->setClient([this](Event event) { events.push_back(event); });
    const std::array<std::uint8_t, 2> bytes{1, 2};
    int count = 0;
    const auto send = [&] { count += ::send(peer, bytes.data(), bytes.size(), 0) == 2 ? 1 : 0; };
    send();
    const auto sending = loop.scheduleTimer(920ms, true, [&](Timer&) { send(); });
    EXPECT_TRUE(fakes::waitUntil(loop, [&] { return count == 5; }));  // 3.68 s, and nothing was written
    sending->invalidate();
    const int delayed = 0;
    EXPECT_EQ(::setsockopt(peer, IPPROTO_TCP, TCP_QUICKACK, &delayed, sizeof delayed), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(stream->write(bytes), 2);  // from the second on there is something that waits for its ack
    stream->rearm();                         // behind the bad news, if there is any
    EXPECT_TRUE(fakes::waitUntil(loop, [&] { return events.size() > 1; }));
    EXPECT_EQ(events, (std::vector{Event::bytesAvailable, Event::bytesAvailable}));
}

}  // namespace
