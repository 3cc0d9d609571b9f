#include "platform/real/ThreadWorkQueue.h"

#include <pthread.h>

#include <utility>

namespace torv {

ThreadWorkQueue::ThreadWorkQueue(const std::string& name)
    : m_name(name.substr(0, 15)), m_thread([this] { run(); }) {}

ThreadWorkQueue::~ThreadWorkQueue() {
    {
        const std::scoped_lock lock{m_mutex};
        m_ending = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void ThreadWorkQueue::post(std::function<void()> work) {
    {
        const std::scoped_lock lock{m_mutex};
        m_work.push_back(std::move(work));
    }
    m_changed.notify_one();
}

void ThreadWorkQueue::run() {
    pthread_setname_np(pthread_self(), m_name.c_str());
    std::unique_lock lock{m_mutex};
    while (true) {
        m_changed.wait(lock, [this] { return m_ending || !m_work.empty(); });
        if (m_ending) return;
        auto work = std::move(m_work.front());
        m_work.pop_front();
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
    }
}

}  // namespace torv
