#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace torv {

/// Passes the word of an event to whoever asked for it, by name.
///
/// Any thread. Posting is synchronous: the observers run on the posting thread, in the order in which
/// they came, and no lock of the center is held meanwhile.
class NotificationCenter final {
public:
    using Handler = std::function<void()>;

    /// Ends the observation when it goes. A handler that has begun on another thread may still run.
    class Observation final {
    public:
        Observation() = default;
        Observation(NotificationCenter& center, std::uint64_t number) : m_center(&center), m_number(number) {}
        Observation(Observation&& other) noexcept { swap(other); }
        Observation& operator=(Observation&& other) noexcept {
            Observation taken{std::move(other)};
            swap(taken);
            return *this;
        }
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        ~Observation();

    private:
        void swap(Observation& other) noexcept {
            std::swap(m_center, other.m_center);
            std::swap(m_number, other.m_number);
        }

        NotificationCenter* m_center = nullptr;
        std::uint64_t m_number = 0;
    };

    [[nodiscard]] Observation addObserver(std::string_view name, Handler handler);
    void postNotificationName(std::string_view name);

private:
    struct Observer {
        std::uint64_t number;
        std::shared_ptr<const Handler> handler;
    };

    void removeObserver(std::uint64_t number);
    [[nodiscard]] bool isObserving(std::string_view name, std::uint64_t number);

    std::mutex m_mutex;
    std::uint64_t m_lastNumber = 0;
    std::map<std::string, std::vector<Observer>, std::less<>> m_observers;
};

}  // namespace torv
