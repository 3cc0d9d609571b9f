#include "Bench.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QThread>
#include <condition_variable>
#include <thread>

#include "Server.h"

namespace bench {

/// The bench's thread. Tasks are handed over here and not through Qt's event queue, whose locks a thread
/// checker does not see. Between runs the server belongs to no thread, so that the next one can take it.
struct Bench::Runner final {
    explicit Runner(Options options)
        : server(std::move(options)), wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        server.moveToThread(nullptr);
    }
    ~Runner() { ::close(wake); }
    Runner(const Runner&) = delete;
    Runner& operator=(const Runner&) = delete;

    [[nodiscard]] bool begin() {
        const std::lock_guard oneCaller(callers);
        if (thread.joinable()) return false;
        thread = std::thread([this] { run(); });
        return true;
    }

    /// Runs the task on the thread and waits for it; does nothing while there is no thread.
    void onThread(const std::function<void()>& task) {
        const std::lock_guard oneCaller(callers);
        if (!thread.joinable()) return;
        std::unique_lock lock(mutex);
        waiting = &task;
        eventfd_write(wake, 1);
        done.wait(lock, [this] { return waiting == nullptr; });
    }

    void end() {
        onThread([this] {
            server.shut();
            loop->quit();
        });
        const std::lock_guard oneCaller(callers);
        if (thread.joinable()) thread.join();
    }

    void run() {
        server.moveToThread(QThread::currentThread());
        QEventLoop turning;
        QSocketNotifier notifier(wake, QSocketNotifier::Read);
        QObject::connect(&notifier, &QSocketNotifier::activated, &server, [this] { takeTask(); });
        loop = &turning;
        turning.exec();
        // What `deleteLater` has left goes now: this thread has no other loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        server.moveToThread(nullptr);
    }

    void takeTask() {
        eventfd_t count = 0;
        eventfd_read(wake, &count);
        const std::lock_guard lock(mutex);
        if (waiting != nullptr) (*waiting)();
        waiting = nullptr;
        done.notify_all();
    }

    Server server;
    const int wake;
    std::mutex callers;  ///< one task at a time; also guards `thread`
    std::thread thread;
    QEventLoop* loop = nullptr;  ///< bench thread only
    std::mutex mutex;
    std::condition_variable done;
    const std::function<void()>* waiting = nullptr;
};

Bench::Bench(Options options) : m_runner(std::make_unique<Runner>(std::move(options))) {}

Bench::~Bench() {
    stop();
}

std::optional<std::string> Bench::start() {
    if (!m_runner->begin()) return std::nullopt;
    std::optional<std::string> error;
    m_runner->onThread([&] { error = m_runner->server.listen(); });
    if (error) stop();
    return error;
}

void Bench::stop() {
    m_runner->end();
}

std::uint16_t Bench::port() const {
    return m_runner->server.port();
}

void Bench::setFault(Fault fault, const Trigger& trigger) {
    m_runner->server.setFault(fault, trigger);
    m_runner->onThread([this] { m_runner->server.applyFaults(); });
}

void Bench::clearFaults() {
    m_runner->server.clearFaults();
    m_runner->onThread([this] { m_runner->server.applyFaults(); });
}

void Bench::setWriteFault(std::uint8_t aid, WriteFault fault) {
    m_runner->server.setWriteFault(aid, fault);
}

void Bench::dropConnections() {
    m_runner->onThread([this] { m_runner->server.dropConnection(); });
}

Bytes Bench::value(std::uint8_t aid) const {
    return m_runner->server.value(aid);
}
void Bench::setValue(std::uint8_t aid, const Bytes& value) {
    m_runner->server.force(aid, value);
}
void Bench::setTroubleCodes(std::vector<std::string> codes) {
    m_runner->server.setTroubleCodes(std::move(codes));
}
Statistics Bench::statistics() const {
    return m_runner->server.statistics();
}
std::set<Bytes> Bench::sent(std::uint8_t aid) const {
    return m_runner->server.sent(aid);
}

}  // namespace bench
