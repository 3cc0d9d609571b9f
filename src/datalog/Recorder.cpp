#include "datalog/Recorder.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "datalog/RecordingWriter.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

using namespace std::chrono_literals;

/// Less than the second that a power cut may cost, for the disk takes its time too.
constexpr auto batchInterval = 500ms;

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
    std::map<AID, TorvAttribute> sensors;  // unchanged once it runs
    std::atomic<std::size_t> count{0};

    std::mutex arriving;
    std::vector<RecordedValue> values;
    std::vector<RecordedEvent> events;

    std::mutex writing;
    std::optional<RecordingWriter> writer;  // none once it has ended

    void take(const Message& message) {
        const auto time = Platform::current().runLoop().now() - begun;
        const auto wall = wallNow();
        for (const auto& [key, bytes] : message) {
            const AID aid = intValue(key);
            if (!sensors.contains(aid)) continue;
            const std::scoped_lock lock{arriving};
            values.push_back({aid, time, wall, std::nullopt, bytes});
            ++count;
        }
    }
    void note(const std::string& text) {
        const auto time = Platform::current().runLoop().now() - begun;
        const std::scoped_lock lock{arriving};
        events.push_back({time, wallNow(), text});
    }
    /// Nothing when all that came is on the disk.
    std::optional<std::string> write() {
        const std::scoped_lock lock{writing};
        if (!writer) return std::nullopt;
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
                value.value = doubleValue(data->value);
        }
        auto error = writer->append(newValues, newEvents);
        if (error) writer.reset();
        return error;
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
    end();
}

std::optional<std::string> Recorder::begin(const std::filesystem::path& file, const Vehicle& vehicle,
                                           const std::string& name) {
    if (m_drive) return std::nullopt;
    auto drive = std::make_shared<Drive>();
    RecordedDrive told{
        .name = name, .vehicle = vehicle.name().value_or(std::string{}), .begun = wallNow(), .sensors = {}};
    for (const auto& sensor : vehicle.sensors()) {
        if (drive->sensors.insert({sensor.aid, sensor}).second)
            told.sensors.push_back(recordedSensor(sensor));
    }
    if (told.sensors.empty()) return "This vehicle has no sensors to record.";
    std::string error;
    drive->writer = RecordingWriter::begin(file, told, error);
    if (!drive->writer) return error;
    drive->file = file;
    drive->name = name;
    drive->begun = Platform::current().runLoop().now();
    m_drive = drive;
    m_connected = m_feeder->driver().connected();
    drive->note(m_connected ? "recording begins" : "recording begins without a link");
    if (!m_queue) m_queue = Platform::current().makeWorkQueue("recorder");
    m_feeder->setMessageSink([drive](const Message& message) { drive->take(message); });
    m_timer = Platform::current().runLoop().scheduleTimer(batchInterval, true, [this](Timer&) { tick(); });
    logLine("recording to " + file.string());
    return std::nullopt;
}

void Recorder::noteLink() {
    if (m_connected == m_feeder->driver().connected()) return;
    m_connected = !m_connected;
    m_drive->note(m_connected ? "link is back" : "link is lost");
}

void Recorder::tick() {
    noteLink();
    m_queue->post([drive = m_drive, weak = std::weak_ptr{m_self}] {
        const auto error = drive->write();
        if (!error) return;
        Platform::current().runLoop().performOnMainThread([drive, weak, why = *error] {
            if (const auto self = weak.lock()) (*self)->fail(drive, why);
        });
    });
}

void Recorder::fail(const std::shared_ptr<Drive>& drive, const std::string& why) {
    if (drive != m_drive) return;
    logLine("recording to " + drive->file.string() + " ends: " + why);
    m_feeder->setMessageSink(nullptr);
    m_timer->invalidate();
    m_drive = nullptr;
    if (m_failed) m_failed("The recording has ended: " + why + " What was recorded before is kept.");
}

void Recorder::end() {
    const auto drive = m_drive;
    if (!drive) return;
    noteLink();
    m_feeder->setMessageSink(nullptr);
    m_timer->invalidate();
    if (const auto error = drive->write()) return fail(drive, *error);
    drive->end();
    m_drive = nullptr;
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
    return std::chrono::floor<std::chrono::seconds>(Platform::current().runLoop().now() - m_drive->begun);
}

std::size_t Recorder::valueCount() const {
    return m_drive ? m_drive->count.load() : 0;
}

}  // namespace torv
