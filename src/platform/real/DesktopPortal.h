#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <optional>

namespace torv {

/// One question to the desktop's portal (org.freedesktop.portal.Desktop), where there is a session bus. It
/// ends itself once it is answered. Main thread; nothing waits.
class DesktopPortal final : public QObject {
    Q_OBJECT

public:
    struct Answer {
        bool asked = false;                  ///< the portal took the question
        bool cancelled = false;              ///< by the user
        std::optional<QVariantMap> results;  ///< nothing when cancelled or refused
    };
    using Done = std::function<void(const Answer&)>;

    /// Whether somebody would answer; asks the bus alone.
    [[nodiscard]] static bool isThere();
    /// Whether it has this part, as not every desktop's has; asks it, and waits a second at most. Nothing
    /// where it does not answer in that time.
    [[nodiscard]] static std::optional<bool> hasInterface(const char* interface);
    /// `call` has all arguments but the last one, the options.
    static void ask(QDBusMessage call, QVariantMap options, Done done);
    [[nodiscard]] static QDBusMessage method(const char* interface, const char* name);

    DesktopPortal(const DesktopPortal&) = delete;
    DesktopPortal& operator=(const DesktopPortal&) = delete;
    ~DesktopPortal() override = default;

private slots:
    void response(unsigned int code, const QVariantMap& results);

private:
    DesktopPortal(QString token, Done done) : m_token(std::move(token)), m_done(std::move(done)) {}
    void begin(const QDBusMessage& call);
    void end(const Answer& answer);

    const QString m_token;
    Done m_done;
};

}  // namespace torv
