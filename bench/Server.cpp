#include "Server.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <algorithm>

namespace bench {
namespace {

constexpr Milliseconds gap{2};  ///< between any two segments
constexpr std::size_t maxAnswers = 64;
constexpr std::uint64_t pushBEvery = 8;
constexpr int variations = 8;

constexpr std::array<Fault, 6> oddFrames{Fault::strayAck, Fault::reservedType, Fault::badAid,
                                         Fault::cutItem,  Fault::ownRequest,   Fault::ownWrite};

std::string hex(ByteView bytes) {
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()))
        .toHex(' ')
        .toStdString();
}

bool holdsValues(const Frame& frame) {
    return frame.type == typeByte(FrameType::pushA) || frame.type == typeByte(FrameType::pushB) ||
           frame.type == typeByte(FrameType::write) || frame.type == typeByte(FrameType::response);
}

}  // namespace

Server::Server(Options options)
    : m_options(std::move(options)),
      m_period(std::chrono::nanoseconds(std::chrono::seconds(1)) / std::clamp(m_options.rate, 1, 400)),
      m_port(m_options.port),
      m_model(m_options.seed),
      m_faults(m_options.seed),
      m_random(m_options.seed) {
    m_pace.setSingleShot(true);
    m_pace.setTimerType(Qt::PreciseTimer);
    m_state.setTroubleCodes(m_options.troubleCodes);
    for (const auto& [aid, fault] : m_options.writeFaults)
        m_state.setWriteFault(aid, fault);
    for (const auto& [fault, trigger] : m_options.faults)
        m_faults.set(fault, trigger);
    connect(&m_pace, &QTimer::timeout, this, &Server::tick);
    connect(&m_listener, &QTcpServer::newConnection, this, &Server::accept);
}

std::optional<std::string> Server::listen() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_adopted) {
            std::string error;
            const std::optional<Profile> profile = loadProfile(m_options.profile, error);
            if (!profile) return error;
            m_state.adopt(*profile);
            if (!m_options.replay.empty()) {
                m_replay = Replay::load(m_options.replay, m_options.speed, error);
                if (!m_replay) return error;
                m_state.leaveOut(m_replay->aids());
            }
            for (const auto& [fault, trigger] : m_options.faults)
                m_faults.set(fault, trigger);
            m_adopted = true;
        }
    }
    const QHostAddress host(QString::fromStdString(m_options.host));
    if (host.isNull()) return "not an address: " + m_options.host;
    if (!m_listener.listen(host, m_port)) {
        return "cannot listen on " + m_options.host + " port " + std::to_string(m_port) + ": " +
               m_listener.errorString().toStdString();
    }
    {
        const std::lock_guard lock(m_mutex);
        m_port = m_listener.serverPort();
        m_open = true;
    }
    applyFaults();
    return std::nullopt;
}

void Server::shut() {
    {
        const std::lock_guard lock(m_mutex);
        m_open = false;
    }
    m_listener.close();
    dropConnection();
}

void Server::dropConnection() {
    m_pace.stop();
    if (m_socket == nullptr) return;
    m_socket->disconnect(this);
    m_socket->abort();
    m_socket->deleteLater();
    m_socket = nullptr;
    say("handset gone");
}

void Server::applyFaults() {
    bool refuse = false;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_open) return;
        refuse = m_faults.holds(Fault::refuse);
        if (refuse && m_listener.isListening()) struck(Fault::refuse);
        // A refusal that begins or ends later is looked at again then.
        if (const std::optional<Milliseconds> next = m_faults.nextChange(Fault::refuse)) {
            QTimer::singleShot(*next + Milliseconds(1), this, &Server::applyFaults);
        }
    }
    if (refuse) {
        m_listener.close();
        dropConnection();
    } else if (!m_listener.isListening() &&
               !m_listener.listen(QHostAddress(QString::fromStdString(m_options.host)), m_port)) {
        say("cannot listen again: " + m_listener.errorString().toStdString());
    }
    arm();
}

void Server::accept() {
    while (QTcpSocket* socket = m_listener.nextPendingConnection()) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_faults.holdsOrStrikes(Fault::refuse)) {
                struck(Fault::refuse);
                socket->abort();
                socket->deleteLater();
                continue;
            }
        }
        dropConnection();
        m_socket = socket;
        m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(m_socket, &QTcpSocket::readyRead, this, &Server::readSocket);
        connect(m_socket, &QTcpSocket::disconnected, this, &Server::dropConnection);
        m_stream = FrameStream();
        {
            const std::lock_guard lock(m_mutex);
            ++m_statistics.connections;
            m_answers.clear();
            m_splitRest.clear();
            m_hurry = false;
            m_muted = m_faults.holdsOrStrikes(Fault::mute);
            if (m_muted) struck(Fault::mute);
            m_silentUntil = {};
            m_nextPush = Clock::now() + m_options.firstDelay;
            if (m_replay) m_replay->beginAt(m_nextPush);
        }
        say("handset connected from " + socket->peerAddress().toString().toStdString());
        readSocket();
        arm();
    }
}

void Server::readSocket() {
    while (m_socket != nullptr && m_socket->bytesAvailable() > 0) {
        const QByteArray bytes = m_socket->read(4096);
        const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
        const std::uint64_t badBefore = m_stream.badFrames();
        const std::vector<Frame> frames =
            m_stream.feed(ByteView(data, static_cast<std::size_t>(bytes.size())));
        const std::lock_guard lock(m_mutex);
        m_statistics.badFrames += m_stream.badFrames() - badBefore;
        for (const Frame& frame : frames)
            handle(frame);
    }
    arm();
}

void Server::handle(const Frame& frame) {
    ++m_statistics.receivedByType[frame.type];
    if (frame.type == typeByte(FrameType::request) && !frame.payload.empty()) respond(frame);
    if (frame.type != typeByte(FrameType::write)) return;
    Frame ack{typeByte(FrameType::ack), {}};
    for (const Item& item : parseItems(frame.payload)) {
        say("write AID " + std::to_string(item.aid) + " = " + hex(item.value));
        if (m_state.write(item)) ack.payload.push_back(item.aid);
        if (m_statistics.writes.size() == Statistics::keptWrites) {
            m_statistics.writes.erase(m_statistics.writes.begin());
        }
        m_statistics.writes.push_back(item);
    }
    if (!ack.payload.empty()) answer(std::move(ack), Fault::dropAck, Fault::delayAck);
}

void Server::respond(const Frame& request) {
    Frame response{typeByte(FrameType::response), {}};
    for (const std::uint8_t aid : request.payload) {
        if (aid >= aidCount) continue;
        const Item item{aid, m_state.value(aid)};
        if (response.payload.size() + 1 + item.value.size() > maxPayload) {
            answer(std::move(response), Fault::dropResponse, Fault::delayResponse);
            response = {typeByte(FrameType::response), {}};
        }
        appendItem(response.payload, item);
    }
    if (!response.payload.empty()) answer(std::move(response), Fault::dropResponse, Fault::delayResponse);
}

void Server::answer(Frame frame, Fault drop, Fault delay) {
    if (m_answers.size() >= maxAnswers || strikes(drop)) return;
    const bool late = strikes(delay);
    m_answers.push_back({Clock::now() + (late ? m_faults.lasting(delay) : Milliseconds{}), std::move(frame)});
}

void Server::arm() {
    const std::lock_guard lock(m_mutex);
    if (m_socket == nullptr || m_muted) {
        m_pace.stop();
        return;
    }
    const Clock::time_point earliest = m_lastSent + gap;
    Clock::time_point next = m_hurry || !m_splitRest.empty() ? earliest : m_nextPush;
    if (const auto due = m_replay ? m_replay->due() : std::nullopt) next = std::min(next, *due);
    for (const Answer& waiting : m_answers)
        next = std::min(next, waiting.due);
    next = std::max({next, earliest, m_silentUntil});
    const auto wait = std::chrono::ceil<Milliseconds>(next - Clock::now());
    m_pace.start(std::clamp(wait, Milliseconds{0}, Milliseconds{1000}));
}

void Server::tick() {
    {
        const std::lock_guard lock(m_mutex);
        const Clock::time_point now = Clock::now();
        const bool held = m_socket == nullptr || m_muted || now < m_silentUntil || now < m_lastSent + gap;
        // A client that does not read must not fill our memory.
        if (held || m_socket->bytesToWrite() > 0 || (m_options.hasReadAll && !m_options.hasReadAll())) {
            if (!held) m_lastSent = now;
        } else if (!m_splitRest.empty()) {
            put(std::exchange(m_splitRest, {}));
        } else if (strikes(Fault::silent)) {
            const auto lasting = m_faults.isEndless(Fault::silent)
                                     ? std::chrono::hours(24 * 365)
                                     : Clock::duration(m_faults.lasting(Fault::silent));
            m_silentUntil = now + lasting;
        } else if (strikes(Fault::close)) {
            QMetaObject::invokeMethod(this, &Server::dropConnection, Qt::QueuedConnection);
        } else {
            sendNext(now);
        }
    }
    arm();
}

void Server::sendNext(Clock::time_point now) {
    const auto due = std::ranges::find_if(m_answers, [now](const Answer& each) { return each.due <= now; });
    if (due != m_answers.end()) {
        const Frame frame = std::move(due->frame);
        m_answers.erase(due);
        m_hurry = true;
        send(frame);
    } else if (auto items = replayed(now); !items.empty()) {
        m_hurry = false;
        m_nextPush = now + m_period;
        send(pushOf(m_state.nextPush(std::move(items))));
        if (!m_replay->due()) say("the recording has ended");
    } else if (m_hurry || now >= m_nextPush) {
        m_hurry = false;
        Milliseconds late{};
        if (m_options.jitter.count() > 0) {
            late = Milliseconds(m_random() % static_cast<std::uint64_t>(m_options.jitter.count() + 1));
        }
        m_nextPush = std::max(m_nextPush + m_period, now + gap) + late;
        const std::optional<Frame> odd = oddFrame();
        send(odd ? *odd : push());
    }
}

std::vector<Item> Server::replayed(Clock::time_point now) {
    const auto due = m_replay ? m_replay->due() : std::nullopt;
    return due && *due <= now ? m_replay->take() : std::vector<Item>{};
}

Frame Server::push() {
    const double seconds =
        m_options.standsAt ? *m_options.standsAt
                           : static_cast<double>(m_pushes) * std::chrono::duration<double>(m_period).count();
    m_state.advance(m_model.at(seconds), seconds);
    return pushOf(m_state.nextPush());
}

Frame Server::pushOf(const std::vector<Item>& items) {
    const FrameType type = ++m_pushes % pushBEvery == 0 ? FrameType::pushB : FrameType::pushA;
    Frame frame{typeByte(type), {}};
    for (const Item& item : items)
        appendItem(frame.payload, item);
    return frame;
}

std::optional<Frame> Server::oddFrame() {
    const auto hit = std::ranges::find_if(oddFrames, [this](Fault fault) { return strikes(fault); });
    const std::vector<std::uint8_t>& aids = m_state.sensorAids();
    if (hit == oddFrames.end() || aids.empty()) return std::nullopt;
    const auto pick = [&] { return aids[m_faults.random(*hit, aids.size())]; };
    const auto itemOf = [this](std::uint8_t aid) { return Item{aid, m_state.value(aid)}; };
    Frame frame;
    switch (*hit) {
        case Fault::strayAck:
            return Frame{typeByte(FrameType::ack), {pick()}};
        case Fault::reservedType:
            frame.type = static_cast<std::uint8_t>(6 + m_faults.random(*hit, 10));
            appendItem(frame.payload, itemOf(pick()));
            return frame;
        case Fault::badAid:
            frame.type = typeByte(FrameType::pushA);
            appendItem(frame.payload, {255, {4, 1, 2, 3}});
            appendItem(frame.payload, itemOf(pick()));
            return frame;
        case Fault::cutItem:
            frame.type = typeByte(FrameType::pushA);
            appendItem(frame.payload, itemOf(pick()));
            appendItem(frame.payload, itemOf(pick()));
            frame.payload.pop_back();
            return frame;
        case Fault::ownRequest:
            return Frame{typeByte(FrameType::request), {pick()}};
        default:
            frame.type = typeByte(FrameType::write);
            appendItem(frame.payload, itemOf(pick()));
            return frame;
    }
}

void Server::send(const Frame& frame) {
    if (strikes(Fault::join, false) && sendJoined(frame)) return;
    record(frame);
    const Bytes wire = encode(frame);
    if (strikes(Fault::corrupt, false) && sendCorrupt(wire)) return;
    if (strikes(Fault::split, false) && sendSplit(wire)) return;
    put(wire);
}

bool Server::sendCorrupt(const Bytes& wire) {
    for (int attempt = 0; attempt < variations; ++attempt) {
        Bytes damaged = wire;
        damaged[m_faults.random(Fault::corrupt, damaged.size())] ^=
            static_cast<std::uint8_t>(1 + m_faults.random(Fault::corrupt, 255));
        if (m_shadow.misleads(damaged, {})) continue;
        struck(Fault::corrupt);
        put(damaged);
        return true;
    }
    return false;
}

bool Server::sendSplit(const Bytes& wire) {
    for (int attempt = 0; attempt < variations; ++attempt) {
        const std::size_t at = 1 + m_faults.random(Fault::split, wire.size() - 1);
        const ByteView head = ByteView(wire).first(at);
        const ByteView rest = ByteView(wire).subspan(at);
        ShadowReader after = m_shadow;
        after.take(head);
        if (m_shadow.misleads(head, {}) || after.misleads(rest, {})) continue;
        struck(Fault::split);
        put(head);
        m_splitRest.assign(rest.begin(), rest.end());
        return true;
    }
    return false;
}

bool Server::sendJoined(const Frame& frame) {
    Frame first = frame;
    Frame second = push();
    if (m_faults.random(Fault::join, 2) == 0) std::swap(first, second);
    // Two full frames would still be read correctly, so the first is made short.
    if (const std::vector<Item> items = parseItems(first.payload); holdsValues(first) && !items.empty()) {
        first.payload.clear();
        appendItem(first.payload, items.front());
    }
    const std::array<Bytes, 2> meant{encode(first), encode(second)};
    Bytes both = meant[0];
    both.insert(both.end(), meant[1].begin(), meant[1].end());
    if (m_shadow.misleads(both, meant)) return false;
    record(first);
    record(second);
    struck(Fault::join);
    put(both);
    return true;
}

void Server::put(ByteView segment) {
    m_shadow.take(segment);
    m_socket->write(reinterpret_cast<const char*>(segment.data()), static_cast<qint64>(segment.size()));
    m_socket->flush();
    m_lastSent = Clock::now();
}

void Server::record(const Frame& frame) {
    ++m_statistics.framesSent;
    ++m_statistics.sentByType[frame.type];
    if (!holdsValues(frame)) return;
    for (Item& item : parseItems(frame.payload)) {
        if (item.aid >= aidCount) continue;
        std::set<Bytes>& kept = m_sent[item.aid];
        if (kept.size() < Statistics::keptValues) {
            kept.insert(std::move(item.value));
        } else if (!kept.contains(item.value)) {
            ++m_statistics.valuesNotKept;
        }
    }
}

bool Server::strikes(Fault fault, bool counted) {
    const bool hit = m_faults.strikes(fault);
    if (hit && counted) struck(fault);
    return hit;
}

void Server::say(const std::string& line) const {
    if (m_options.log) m_options.log(line);
}

void Server::setFault(Fault fault, const Trigger& trigger) {
    const std::lock_guard lock(m_mutex);
    m_faults.set(fault, trigger);
}

void Server::clearFaults() {
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
    m_muted = false;
    m_silentUntil = {};
}

void Server::setWriteFault(std::uint8_t aid, WriteFault fault) {
    const std::lock_guard lock(m_mutex);
    m_state.setWriteFault(aid, fault);
}

void Server::force(std::uint8_t aid, const Bytes& value) {
    const std::lock_guard lock(m_mutex);
    m_state.force(aid, value);
}

void Server::setTroubleCodes(std::vector<std::string> codes) {
    const std::lock_guard lock(m_mutex);
    m_state.setTroubleCodes(std::move(codes));
}

std::uint16_t Server::port() const {
    const std::lock_guard lock(m_mutex);
    return m_port;
}

Bytes Server::value(std::uint8_t aid) const {
    const std::lock_guard lock(m_mutex);
    return aid < aidCount ? m_state.value(aid) : Bytes{};
}

Statistics Server::statistics() const {
    const std::lock_guard lock(m_mutex);
    return m_statistics;
}

std::set<Bytes> Server::sent(std::uint8_t aid) const {
    const std::lock_guard lock(m_mutex);
    return aid < aidCount ? m_sent[aid] : std::set<Bytes>{};
}

}  // namespace bench
