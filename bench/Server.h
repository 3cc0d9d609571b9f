#pragma once

#include <QTcpServer>
#include <QTimer>
#include <deque>
#include <mutex>

#include "Bench.h"
#include "ModuleState.h"
#include "Replay.h"
#include "ShadowReader.h"

namespace bench {

/// The bench's TCP side: answers, pacing, and the faults on the wire.
///
/// Lives on the bench's thread; the members under `m_mutex` are also reached by the callers' threads.
class Server final : public QObject {
public:
    explicit Server(Options options);

    /// Bench thread.
    [[nodiscard]] std::optional<std::string> listen();
    void shut();
    void dropConnection();
    void applyFaults();  ///< after faults were set or cleared

    /// Any thread.
    void setFault(Fault fault, const Trigger& trigger);
    void clearFaults();
    void setWriteFault(std::uint8_t aid, WriteFault fault);
    void force(std::uint8_t aid, const Bytes& value);
    void setTroubleCodes(std::vector<std::string> codes);
    [[nodiscard]] std::uint16_t port() const;
    [[nodiscard]] Bytes value(std::uint8_t aid) const;
    [[nodiscard]] Statistics statistics() const;
    [[nodiscard]] std::set<Bytes> sent(std::uint8_t aid) const;

private:
    struct Answer {
        Clock::time_point due;
        Frame frame;
    };

    void accept();
    void readSocket();
    void handle(const Frame& frame);
    void answer(Frame frame, Fault drop, Fault delay);
    void respond(const Frame& request);

    void arm();
    void tick();
    void sendNext(Clock::time_point now);
    [[nodiscard]] Frame push();
    [[nodiscard]] Frame pushOf(const std::vector<Item>& items);
    [[nodiscard]] std::vector<Item> replayed(Clock::time_point now);
    [[nodiscard]] std::optional<Frame> oddFrame();
    void send(const Frame& frame);
    [[nodiscard]] bool sendCorrupt(const Bytes& wire);
    [[nodiscard]] bool sendSplit(const Bytes& wire);
    [[nodiscard]] bool sendJoined(const Frame& frame);
    void put(ByteView segment);
    void record(const Frame& frame);
    /// With the mutex held. Faults that may turn out impossible are counted where they happen.
    [[nodiscard]] bool strikes(Fault fault, bool counted = true);
    void struck(Fault fault) { ++m_statistics.faults[static_cast<std::size_t>(fault)]; }
    void say(const std::string& line) const;

    const Options m_options;
    const Clock::duration m_period;
    QTcpServer m_listener{this};
    QTimer m_pace{this};
    QTcpSocket* m_socket = nullptr;  ///< owned by the listener
    FrameStream m_stream;

    mutable std::mutex m_mutex;
    std::uint16_t m_port = 0;
    bool m_adopted = false;
    bool m_open = false;
    ModuleState m_state;
    EngineModel m_model;
    std::optional<Replay> m_replay;
    Faults m_faults;
    ShadowReader m_shadow;
    Statistics m_statistics;
    std::array<std::set<Bytes>, aidCount> m_sent;
    std::mt19937_64 m_random;

    std::deque<Answer> m_answers;
    Bytes m_splitRest;
    bool m_hurry = false;  ///< an answer went out and wants a frame behind it
    bool m_muted = false;
    std::uint64_t m_pushes = 0;
    Clock::time_point m_lastSent{};
    Clock::time_point m_nextPush{};
    Clock::time_point m_silentUntil{};
};

}  // namespace bench
