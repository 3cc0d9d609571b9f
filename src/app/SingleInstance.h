#pragma once

#include <QByteArray>
#include <QDBusVirtualObject>
#include <QLockFile>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace torv {

/// One window for each user: two would fight over the link and the store. By a name on the session bus, and
/// by a lock beside the store where there is none. Main thread.
///
///   A second start      what becomes of the first        what becomes of the second
///   without a file      its window comes forward         ends
///   with a file         asked to end (`mayEnd`); ends    goes on as a launch with that file, once it has
///                       says no: goes on                 ends, with a sentence
///   and no bus          goes on                          ends, with a sentence
class SingleInstance final : public QDBusVirtualObject {
public:
    /// What a second start asks of this one. `comeForward` gets the desktop's token for that, or nothing.
    /// `mayEnd` answers at once or later; after a yes `end` follows, if the other start still waits for it.
    struct Handlers {
        std::function<void(const QByteArray& token)> comeForward;
        std::function<void(std::function<void(bool)> answer)> mayEnd;
        std::function<void()> end;
    };
    enum class Claim { mine, cameForward, refused };

    explicit SingleInstance(const std::filesystem::path& folder);
    ~SingleInstance() override;
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Blocks for as long as the first one takes. `why` is the sentence of a refusal.
    [[nodiscard]] Claim claim(bool withFile, std::string& why);
    /// From now on a second start is answered; until then it waits.
    void serve(Handlers handlers) { m_handlers = std::move(handlers); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

private:
    [[nodiscard]] bool ownName();
    [[nodiscard]] Claim askFirst(bool withFile, std::string& why);

    std::unique_ptr<QLockFile> m_lock;  // null where there is no folder for it
    Handlers m_handlers;
    bool m_onBus = false;
};

}  // namespace torv
