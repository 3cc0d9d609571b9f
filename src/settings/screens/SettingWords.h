// What the screens of the settings say of a value, each in the same words.
#pragma once

#include <QString>
#include <memory>

#include "screens/AlertView.h"

namespace torv {

inline const QString untakenNote = QStringLiteral("not taken by the module");
inline const QString onlyReadNote = QStringLiteral("can only be read: nothing is known of how to write it");

/// After a change that was begun for a vehicle that is not the current one any more.
[[nodiscard]] inline std::shared_ptr<AlertView> alertOfAnotherVehicle() {
    return std::make_shared<AlertView>(
        QStringLiteral("Not saved"),
        QStringLiteral("Another vehicle has been chosen meanwhile. Please set this once more for that one."),
        QStringList{"OK"});
}

}  // namespace torv
