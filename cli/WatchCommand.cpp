#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Commands.h"
#include "platform/Platform.h"

namespace itorvctl {

using namespace torv;

namespace {

constexpr std::chrono::milliseconds refreshInterval{200};

class Display {
public:
    Display() = default;
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    virtual ~Display() = default;

    virtual void show(const Reading& reading) = 0;
    virtual void refresh(iTorvFeeder& feeder) = 0;  ///< every `refreshInterval`
};

class LineDisplay final : public Display {
public:
    explicit LineDisplay(bool json) : m_json(json) {}

    void show(const Reading& reading) override {
        const auto line =
            m_json ? jsonLine(reading) : std::to_string(reading.milliseconds) + "  " + plainText(reading);
        std::puts(line.c_str());
        std::fflush(stdout);
    }
    /// Lines that merely stop would look like a module that has nothing to say.
    void refresh(iTorvFeeder& feeder) override {
        const bool connected = feeder.driver().connected();
        if (std::exchange(m_connected, connected) == connected) return;
        complain("the connection to " + textOfEndpoint(feeder.driver().endpoint()) +
                 (connected ? " is there again" : " is lost; trying again"));
    }

private:
    const bool m_json;
    bool m_connected = true;
};

/// A table that stays in its place on a terminal.
class TableDisplay final : public Display {
public:
    explicit TableDisplay(const std::vector<TorvAttribute>& sensors) {
        for (const auto& sensor : sensors) {
            m_rows.push_back({.aid = sensor.aid,
                              .name = printable(sensor.name.value_or(std::string{})),
                              .value = "-",
                              .unit = printable(unitText(sensor.unit)),
                              .since = std::nullopt});
        }
        std::fputs("\033[2J", stdout);
    }

    void show(const Reading& reading) override {
        for (auto& row : m_rows) {
            if (row.aid != reading.aid) continue;
            row.value = shownValue(reading);
            row.warning = reading.warning;
            row.since = Platform::current().runLoop().now();
        }
    }

    /// As many rows and columns as the terminal has; what is more would scroll the rest away. A value that is
    /// too old to be taken for live is marked so.
    void refresh(iTorvFeeder& feeder) override {
        winsize size{};
        const bool known =
            ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 1 && size.ws_col > 0;
        const auto rows = known ? std::min<std::size_t>(m_rows.size(), size.ws_row - 1U) : m_rows.size();
        std::fputs("\033[H", stdout);
        for (std::size_t i = 0; i < rows; ++i) {
            const auto& row = m_rows[i];
            const bool old = row.since && feeder.isOldForAID(*row.since, row.aid);
            const char* const mark = old ? "old" : row.warning ? "WARNING" : "";
            const char* const look = old ? "\033[2m" : row.warning ? "\033[1;31m" : "";
            std::array<char, 256> line{};
            std::snprintf(line.data(), line.size(), "%3d  %-20.20s %12.12s %-12.12s%s",
                          static_cast<int>(row.aid), row.name.c_str(), row.value.c_str(), row.unit.c_str(),
                          mark);
            const int width = known ? size.ws_col : static_cast<int>(line.size());
            std::printf("%s%.*s\033[0m\033[K\n", look, width, line.data());
        }
        std::fputs("\033[J", stdout);
        std::fflush(stdout);
    }

private:
    struct Row {
        AID aid;
        std::string name;
        std::string value;
        std::string unit;
        std::optional<RunLoop::Clock::time_point> since;  // when the value came
        bool warning = false;
    };

    std::vector<Row> m_rows;
};

/// Decodes on the main thread: a slow terminal must not hold up the reading thread.
class SensorReader final : public iTorvReader, public std::enable_shared_from_this<SensorReader> {
public:
    SensorReader(TorvAttribute sensor, const Handset& handset, std::shared_ptr<Display> display)
        : m_sensor(std::move(sensor)), m_handset(handset), m_display(std::move(display)) {}

    void readAid(std::span<std::uint8_t> bytes, AID aid) override {
        Platform::current().runLoop().performOnMainThread(
            [self = shared_from_this(), value = AV::forAID(aid, bytes), milliseconds = m_handset.elapsed()] {
                self->m_display->show(readingOf(self->m_sensor, value, milliseconds));
            });
    }
    [[nodiscard]] std::int32_t priority() const override { return 0; }

private:
    const TorvAttribute m_sensor;
    const Handset& m_handset;
    std::shared_ptr<Display> m_display;
};

}  // namespace

int watch(Handset& handset, const Arguments& arguments) {
    const auto sensors = handset.vehicle().sensors();
    if (sensors.empty()) {
        complain("the profile names no sensors");
        return badArguments;
    }
    if (!handset.connect()) return notConnected(handset);
    std::shared_ptr<Display> display;
    if (arguments.json || ::isatty(STDOUT_FILENO) == 0) {
        display = std::make_shared<LineDisplay>(arguments.json);
    } else {
        display = std::make_shared<TableDisplay>(sensors);
    }
    for (const auto& sensor : sensors) {
        handset.feeder().addReaderForKey(std::make_shared<SensorReader>(sensor, handset, display),
                                         std::to_string(sensor.aid));
    }
    const auto timer = Platform::current().runLoop().scheduleTimer(
        refreshInterval, true, [&feeder = handset.feeder(), display](Timer&) { display->refresh(feeder); });
    handset.run();
    timer->invalidate();
    return success;
}

}  // namespace itorvctl
