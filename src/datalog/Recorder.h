#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "datalog/RecordedDrive.h"
#include "platform/RunLoop.h"
#include "platform/WorkQueue.h"
#include "session/iTorvFeeder.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// What a recording keeps of a sensor.
[[nodiscard]] RecordedSensor recordedSensor(const TorvAttribute& sensor);

/// Writes every value of every sensor that comes to the store into a recording, whatever the pages show.
/// Main thread.
///
///   Recorder   entered by                             leaves by
///   Idle                                              `begin`: Recording
///   Recording  `begin`                                `end`, a file that can't be written: Idle
///
/// The reading thread only notes what came; twice a second a thread of its own puts that on the disk, also
/// while the main thread is busy. A link that is lost does not end it.
class Recorder final {
public:
    explicit Recorder(std::shared_ptr<iTorvFeeder> feeder);
    /// Ends what runs.
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Nothing once it records, else why it does not, in a sentence. Does nothing while it records.
    [[nodiscard]] std::optional<std::string> begin(const std::filesystem::path& file, const Vehicle& vehicle,
                                                   const std::string& name);
    /// Returns once all of it is on the disk.
    void end();
    /// Ends what runs and begins another one; when that fails it is told like any other end.
    void beginAnew(const std::filesystem::path& file, const Vehicle& vehicle, const std::string& name);
    [[nodiscard]] bool isRecording() const { return m_drive != nullptr; }
    /// Those of the recording that runs; empty when there is none.
    [[nodiscard]] std::filesystem::path file() const;
    [[nodiscard]] std::string name() const;
    /// Of the one that runs, if this is its file; what the file says is not changed.
    void setName(const std::filesystem::path& file, const std::string& name);
    [[nodiscard]] std::chrono::seconds length() const;
    [[nodiscard]] std::size_t valueCount() const;
    /// Told, in a sentence, when a recording ended because it can't be written.
    void setFailed(std::function<void(const std::string&)> failed) { m_failed = std::move(failed); }

    /// Told whenever `isRecording` has changed.
    void setChanged(std::function<void()> changed) { m_changed = std::move(changed); }

private:
    struct Drive;

    void setDrive(std::shared_ptr<Drive> drive);
    void noteLink();
    void tick();
    [[nodiscard]] std::function<void()> batchWriter(const std::shared_ptr<Drive>& drive) const;
    void fail(const std::shared_ptr<Drive>& drive, const std::string& why);

    const std::shared_ptr<iTorvFeeder> m_feeder;
    std::function<void(const std::string&)> m_failed;
    std::function<void()> m_changed;
    std::shared_ptr<Drive> m_drive;  // also held by the work under way and by the reading thread
    std::shared_ptr<Timer> m_timer;
    std::shared_ptr<WorkQueue> m_queue;
    bool m_connected = false;
    std::uint64_t m_sessions = 0;
    std::shared_ptr<Recorder*> m_self;  // for work that comes back; gone with this object
};

}  // namespace torv
