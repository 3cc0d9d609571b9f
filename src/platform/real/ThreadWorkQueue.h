#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include "platform/WorkQueue.h"

namespace torv {

/// One thread that takes the work in order.
class ThreadWorkQueue final : public WorkQueue {
public:
    explicit ThreadWorkQueue(const std::string& name);
    ~ThreadWorkQueue() override;

    void post(std::function<void()> work) override;

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_work;
    bool m_ending = false;
    const std::string m_name;
    std::thread m_thread;
};

}  // namespace torv
