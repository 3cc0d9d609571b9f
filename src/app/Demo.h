#pragma once

#include <QString>
#include <QTemporaryDir>
#include <optional>
#include <string>

#include "bench/Bench.h"
#include "platform/UserDefaults.h"
#include "session/ConnectionOptions.h"

namespace torv {

/// A drive without a truck: a module on a thread of this process, and stores that go with it, so that nothing
/// reaches the user's own. Main thread.
class Demo final {
public:
    enum class Kind { drive, faults };
    [[nodiscard]] static std::optional<Kind> kindFromText(const QString& text);

    /// Before anything looks for the user's stores: from then on they are the demo's.
    explicit Demo(Kind kind);

    /// Nothing once the module listens, else why it does not, in a sentence.
    [[nodiscard]] std::optional<std::string> start();
    [[nodiscard]] Endpoint module() const { return {"127.0.0.1", m_module.port()}; }
    /// Sensors on the pages, as somebody would have put them there.
    static void prepare(UserDefaults& defaults);

private:
    const QTemporaryDir m_stores;
    bench::Bench m_module;
};

}  // namespace torv
