#pragma once

#include <QString>
#include <optional>
#include <string>

namespace torv {

/// Lets the user choose a file with the desktop's file chooser, and waits for that in an event loop of its
/// own. Main thread, before the application's loop.
class DesktopFileChooser final {
public:
    struct Outcome {
        std::optional<QString> file;  ///< nothing when the user wanted none
        std::string error;            ///< why nobody could be asked
    };
    [[nodiscard]] static Outcome choose(const QString& title);
};

}  // namespace torv
