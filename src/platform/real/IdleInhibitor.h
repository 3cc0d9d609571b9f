#pragma once

#include <QObject>
#include <optional>

namespace torv {

/// Asks the desktop to keep the screen on, and takes that back. Main thread; waits for no answer.
///
/// Through the interface org.freedesktop.ScreenSaver; the desktop also takes it back when the program leaves
/// the bus. Does nothing where there is no session bus; a desktop that refuses is said once in the log.
class IdleInhibitor final : public QObject {
public:
    void setInhibited(bool inhibited);

private:
    void release();

    bool m_inhibited = false;  // what is wanted
    bool m_said = false;
    bool m_asking = false;                 // the answer with the cookie is on its way
    std::optional<unsigned int> m_cookie;  // what the desktop knows the request by
};

}  // namespace torv
