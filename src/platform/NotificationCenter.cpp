#include "platform/NotificationCenter.h"

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
    for (const auto& observer : observers)
        (*observer.handler)();
}

void NotificationCenter::removeObserver(std::uint64_t number) {
    const std::scoped_lock lock{m_mutex};
    for (auto& [name, observers] : m_observers) {
        if (std::erase_if(observers, [&](const Observer& o) { return o.number == number; }) > 0) return;
    }
}

}  // namespace torv
