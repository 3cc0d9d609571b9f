#include "datalog/RecordingExport.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <memory>

#include "JSON/SBJsonWriter.h"

namespace torv {
namespace {

using Values = RecordingReader::Values;

constexpr auto notWritten = "It can't be written.";

/// The shortest that reads back as the same number.
std::string numberText(double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end.ptr};
}

/// All sensors' values in the order of their times.
class Merge final {
public:
    explicit Merge(const RecordingReader& recording) {
        for (const auto& sensor : recording.drive().sensors)
            m_sensors.push_back({recording.valuesOf(sensor.aid), {}});
        for (std::size_t i = 0; i < m_sensors.size(); ++i)
            advance(i);
    }

    struct Next {
        std::size_t sensor;
        RecordedValue value;
    };
    [[nodiscard]] std::optional<Next> next() {
        if (m_heap.empty()) return std::nullopt;
        std::ranges::pop_heap(m_heap, std::bind_front(&Merge::isLater, this));
        const auto sensor = m_heap.back();
        m_heap.pop_back();
        const auto value = *m_sensors[sensor].ahead;
        advance(sensor);
        return Next{sensor, value};
    }
    [[nodiscard]] std::string error() const {
        for (const auto& sensor : m_sensors) {
            if (!sensor.values.error().empty()) return sensor.values.error();
        }
        return {};
    }

private:
    struct Sensor {
        Values values;
        std::optional<RecordedValue> ahead;
    };

    [[nodiscard]] bool isLater(std::size_t a, std::size_t b) const {
        return std::pair{m_sensors[a].ahead->time, a} > std::pair{m_sensors[b].ahead->time, b};
    }
    void advance(std::size_t sensor) {
        m_sensors[sensor].ahead = m_sensors[sensor].values.next();
        if (!m_sensors[sensor].ahead) return;
        m_heap.push_back(sensor);
        std::ranges::push_heap(m_heap, std::bind_front(&Merge::isLater, this));
    }

    std::vector<Sensor> m_sensors;
    std::vector<std::size_t> m_heap;  // the places of those that have a value ahead
};

/// By the clock that never jumps: the other one may be set in the middle of a drive.
WallTime momentOf(const RecordingReader& recording, DriveTime time) {
    return recording.drive().begun + std::chrono::floor<std::chrono::milliseconds>(time);
}

std::string quoted(const std::string& field) {
    if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
    std::string text = "\"";
    for (const char letter : field)
        text += letter == '"' ? std::string{"\"\""} : std::string(1, letter);
    return text + '"';
}

/// Values of one millisecond share a row; a second value of the same sensor begins a new one.
std::string writeOneTimeAxis(const RecordingReader& recording, const TextSink& write) {
    const auto& sensors = recording.drive().sensors;
    std::string line = "time";
    for (const auto& sensor : sensors)
        line += ',' + quoted(sensor.unit.empty() ? sensor.name : sensor.name + " (" + sensor.unit + ")");
    line += "\r\n";
    if (!write(line)) return notWritten;
    std::vector<std::string> cells(sensors.size());
    std::optional<WallTime> row;
    const auto flush = [&] {
        if (!row) return true;
        line = isoText(*row);
        for (auto& cell : cells) {
            line += ',' + cell;
            cell.clear();
        }
        line += "\r\n";
        return write(line);
    };
    Merge values{recording};
    while (const auto next = values.next()) {
        auto& cell = cells[next->sensor];
        const auto moment = momentOf(recording, next->value.time);
        if ((row != moment || !cell.empty()) && !flush()) return notWritten;
        row = moment;
        if (next->value.value) cell = numberText(*next->value.value);
    }
    if (!flush()) return notWritten;
    return values.error();
}

std::string writeDataLog(const RecordingReader& recording, const TextSink& write) {
    std::vector<DataLogColumn> columns;
    std::vector<std::shared_ptr<Values>> all;
    for (const auto& sensor : recording.drive().sensors) {
        if (sensor.minmax == "off" || sensor.minmax == "none") continue;
        all.push_back(std::make_shared<Values>(recording.valuesOf(sensor.aid)));
        columns.push_back(
            {sensor.name, sensor.decimaldigits, [values = all.back()]() -> std::optional<LoggedSample> {
                 const auto value = values->next();
                 if (!value) return std::nullopt;
                 return LoggedSample{value->value.value_or(0), value->wall};
             }});
    }
    if (!writeDataLogCsv(columns, write)) return notWritten;
    for (const auto& values : all) {
        if (!values->error().empty()) return values->error();
    }
    return {};
}

std::string writeJsonLines(const RecordingReader& recording, const TextSink& write) {
    const auto& sensors = recording.drive().sensors;
    const auto put = [&write](const Dictionary& object) {
        return write(SBJsonWriter{}.stringWithObject(object).value_or("{}") + "\n");
    };
    const auto events = recording.events();
    auto event = events.begin();
    const auto putEvents = [&](DriveTime until) {
        for (; event != events.end() && event->time <= until; ++event) {
            if (!put({{"time", isoText(momentOf(recording, event->time))}, {"event", event->text}}))
                return false;
        }
        return true;
    };
    Merge values{recording};
    while (const auto next = values.next()) {
        const auto& sensor = sensors[next->sensor];
        const auto& value = next->value.value;
        const bool done = putEvents(next->value.time) &&
                          put({{"time", isoText(momentOf(recording, next->value.time))},
                               {"aid", Number::fromInteger(sensor.aid)},
                               {"name", sensor.name},
                               {"value", value ? Value{Number::fromDouble(*value)} : Value{}},
                               {"unit", sensor.unit}});
        if (!done) return notWritten;
    }
    return putEvents(DriveTime::max()) ? values.error() : notWritten;
}

}  // namespace

std::string exportRecording(const RecordingReader& recording, RecordingFormat::Kind kind,
                            const TextSink& write) {
    switch (kind) {
        case RecordingFormat::Kind::oneTimeAxis:
            return writeOneTimeAxis(recording, write);
        case RecordingFormat::Kind::dataLog:
            return writeDataLog(recording, write);
        case RecordingFormat::Kind::jsonLines:
            return writeJsonLines(recording, write);
    }
    return {};
}

}  // namespace torv
