#include "platform/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace torv {

NotificationCenter::Observation::~Observation() {
    if (m_center) m_center->removeObserver(m_number);
}

NotificationCenter::Observation NotificationCenter::addObserver(std::string_view name, Handler handler) {
    const std::scoped_lock lock{m_mutex};
    const auto number = ++m_lastNumber;
    m_observers[std::string{name}].push_back({number, std::make_shared<const Handler>(std::move(handler))});
    return {*this, number};
}

void NotificationCenter::postNotificationName(std::string_view name) {
    std::vector<Observer> observers;
    {
        const std::scoped_lock lock{m_mutex};
        const auto found = m_observers.find(name);
        if (found == m_observers.end()) return;
        observers = found->second;
    }
    // A handler may turn the loop, and end others that were to hear of it too.
    for (const auto& observer : observers) {
        if (isObserving(name, observer.number)) (*observer.handler)();
    }
}

bool NotificationCenter::isObserving(std::string_view name, std::uint64_t number) {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_observers.find(name);
    return found != m_observers.end() &&
           std::any_of(found->second.begin(), found->second.end(),
                       [&](const Observer& observer) { return observer.number == number; });
}

void NotificationCenter::removeObserver(std::uint64_t number) {
    const std::scoped_lock lock{m_mutex};
    for (auto& [name, observers] : m_observers) {
        if (std::erase_if(observers, [&](const Observer& o) { return o.number == number; }) > 0) return;
    }
}

}  // namespace torv
