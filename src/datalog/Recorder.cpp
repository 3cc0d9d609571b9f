#include "datalog/Recorder.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "attributes/AVTimeFormatter.h"
#include "datalog/RecordingWriter.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

using namespace std::chrono_literals;

/// Less than the second that a power cut may cost, for the disk takes its time too.
constexpr auto batchInterval = 500ms;

/// What a text shows as a number, and a running time, "1:02:03", as its seconds. Nothing for words.
std::optional<double> shownNumber(std::string_view text) {
    double number = 0;
    for (bool more = true; more;) {
        const auto colon = text.find(':');
        const auto part = wholeTextDoubleValue(text.substr(0, colon));
        if (!part) return std::nullopt;
        constexpr double sixty = 60;
        number = number * sixty + *part;
        more = colon != std::string_view::npos;
        if (more) text.remove_prefix(colon + 1);
    }
    return number;
}

/// As recordings have it: running times in seconds, whatever the live list makes of them.
RecordedSensor sensorToRecord(const TorvAttribute& sensor) {
    auto recorded = recordedSensor(sensor);
    if (sensor.unit == "tSEC" || std::dynamic_pointer_cast<AVTimeFormatter>(sensor.formatter))
        recorded.unit = "SEC";
    return recorded;
}

}  // namespace

RecordedSensor recordedSensor(const TorvAttribute& sensor) {
    return {.aid = sensor.aid,
            .name = sensor.name.value_or(std::string{}),
            .unit = unitText(sensor.unit),
            .decimaldigits = sensor.decimaldigits,
            .minmax = sensor.minmax.value_or(std::string{}),
            .warningRule = sensor.warningRule,
            .warningValue = sensor.warningValue};
}

/// What three threads share of one recording.
struct Recorder::Drive {
    std::filesystem::path file;
    std::string name;
    RunLoop::Clock::time_point begun;
    RunLoop::Clock::duration suspendedBefore{};
    std::map<AID, TorvAttribute> sensors;  // unchanged once it runs
    std::atomic<std::size_t> count{0};

    std::mutex arriving;
    std::vector<RecordedValue> values;
    std::vector<RecordedEvent> events;

    RunLoop::Clock::duration lastBatch{};  // reading thread

    std::mutex writing;
    std::optional<RecordingWriter> writer;  // none once it has ended
    std::string error;                      // why it ended, if by itself

    /// Since it began.
    [[nodiscard]] DriveTime now() const {
        const auto& loop = Platform::current().runLoop();
        return loop.now() - begun + (loop.suspended() - suspendedBefore);
    }
    /// True when it is time for a batch, however busy the main thread is.
    bool take(const Message& message) {
        const auto time = now();
        const auto wall = wallNow();
        for (const auto& [key, bytes] : message) {
            const AID aid = intValue(key);
            if (!sensors.contains(aid)) continue;
            const std::scoped_lock lock{arriving};
            values.push_back({aid, time, wall, std::nullopt, bytes});
            ++count;
        }
        if (time - lastBatch < batchInterval) return false;
        lastBatch = time;
        return true;
    }
    void note(const std::string& text) {
        const auto time = now();
        const std::scoped_lock lock{arriving};
        events.push_back({time, wallNow(), text});
    }
    /// Nothing when all that came is on the disk, else why not, as the beginning of a sentence.
    std::optional<std::string> write() {
        const std::scoped_lock lock{writing};
        if (!writer) return error.empty() ? std::nullopt : std::optional{error};
        std::vector<RecordedValue> newValues;
        std::vector<RecordedEvent> newEvents;
        {
            const std::scoped_lock arrivals{arriving};
            newValues.swap(values);
            newEvents.swap(events);
        }
        for (auto& value : newValues) {
            auto bytes = value.bytes;  // some formatters write into them
            if (const auto data = sensors.at(value.aid).dataFromAV(bytes))
                value.value = shownNumber(data->value);
        }
        auto why = writer->append(newValues, newEvents);
        error = why.value_or(std::string{});
        if (why) writer.reset();
        return why;
    }
    void end() {
        const std::scoped_lock lock{writing};
        if (writer) writer->end();
        writer.reset();
    }
};

Recorder::Recorder(std::shared_ptr<iTorvFeeder> feeder)
    : m_feeder(std::move(feeder)), m_self(std::make_shared<Recorder*>(this)) {}

Recorder::~Recorder() {
    m_failed = nullptr;
    m_changed = nullptr;
    end();
}

std::optional<std::string> Recorder::begin(const std::filesystem::path& file, const Vehicle& vehicle,
                                           const std::string& name) {
    if (m_drive) return std::nullopt;
    auto drive = std::make_shared<Drive>();
    RecordedDrive told{
        .name = name, .vehicle = vehicle.name().value_or(std::string{}), .begun = {}, .sensors = {}};
    for (const auto& sensor : vehicle.sensors()) {
        if (drive->sensors.insert({sensor.aid, sensor}).second)
            told.sensors.push_back(sensorToRecord(sensor));
    }
    if (told.sensors.empty()) return "This vehicle has no sensors to record.";
    told.begun = wallNow();
    drive->begun = Platform::current().runLoop().now();
    drive->suspendedBefore = Platform::current().runLoop().suspended();
    std::string error;
    drive->writer = RecordingWriter::begin(file, told, error);
    if (!drive->writer) return error;
    drive->file = file;
    drive->name = name;
    setDrive(drive);
    m_connected = m_feeder->driver().connected();
    m_sessions = m_feeder->driver().sessionCount();
    drive->note(m_connected ? "recording begins" : "recording begins without a link");
    if (!m_queue) m_queue = Platform::current().makeWorkQueue("recorder");
    m_feeder->setMessageSink([drive, write = batchWriter(drive)](const Message& message) {
        if (drive->take(message)) write();
    });
    m_timer = Platform::current().runLoop().scheduleTimer(batchInterval, true, [this](Timer&) { tick(); });
    logLine("recording to " + file.string());
    return std::nullopt;
}

void Recorder::setDrive(std::shared_ptr<Drive> drive) {
    m_drive = std::move(drive);
    if (m_changed) m_changed();
}

void Recorder::noteLink() {
    const auto& driver = m_feeder->driver();
    const auto sessions = driver.sessionCount();
    // It may have been lost and have come back since the last look, and more than once.
    const auto lose = [this] {
        if (m_connected) m_drive->note("link is lost");
        m_connected = false;
    };
    for (; m_sessions < sessions; ++m_sessions) {
        lose();
        m_drive->note("link is back");
        m_connected = true;
    }
    if (!driver.connected()) lose();
}

std::function<void()> Recorder::batchWriter(const std::shared_ptr<Drive>& drive) const {
    return [queue = std::weak_ptr{m_queue}, drive, weak = std::weak_ptr{m_self}] {
        const auto alive = queue.lock();
        if (!alive) return;
        alive->post([drive, weak] {
            const auto error = drive->write();
            if (!error) return;
            Platform::current().runLoop().performOnMainThread([drive, weak, why = *error] {
                if (const auto self = weak.lock()) (*self)->fail(drive, why);
            });
        });
    };
}

void Recorder::tick() {
    noteLink();
    batchWriter(m_drive)();
}

void Recorder::fail(const std::shared_ptr<Drive>& drive, const std::string& why) {
    if (drive != m_drive) return;
    logLine("recording to " + drive->file.string() + " ends: " + why);
    m_feeder->setMessageSink(nullptr);
    m_timer->invalidate();
    setDrive(nullptr);
    if (m_failed) m_failed(why + ", so the recording has ended; what was recorded is kept.");
}

void Recorder::end() {
    const auto drive = m_drive;
    if (!drive) return;
    noteLink();
    m_feeder->setMessageSink(nullptr);
    m_timer->invalidate();
    if (const auto error = drive->write()) return fail(drive, *error);
    drive->end();
    setDrive(nullptr);
}

void Recorder::beginAnew(const std::filesystem::path& file, const Vehicle& vehicle, const std::string& name) {
    end();
    const auto why = begin(file, vehicle, name);
    if (why && m_failed) m_failed("The recording has ended: " + *why);
}

std::filesystem::path Recorder::file() const {
    return m_drive ? m_drive->file : std::filesystem::path{};
}

std::string Recorder::name() const {
    return m_drive ? m_drive->name : std::string{};
}

void Recorder::setName(const std::filesystem::path& file, const std::string& name) {
    if (m_drive && m_drive->file == file) m_drive->name = name;
}

std::chrono::seconds Recorder::length() const {
    if (!m_drive) return {};
    return std::chrono::floor<std::chrono::seconds>(m_drive->now());
}

std::size_t Recorder::valueCount() const {
    return m_drive ? m_drive->count.load() : 0;
}

}  // namespace torv
