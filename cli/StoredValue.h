#pragma once

#include <optional>
#include <string>

#include "support/AV.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/Vehicle.h"

namespace itorvctl {

/// What `itorv` has stored of one setting or tuning item, from where each of its connects brings it back.
/// Main thread.
///
/// Settings are stored by vehicle. Tuning items stand in the active tuning profile; the default profile holds
/// none, and the module then goes back to values of its own.
class StoredValue final {
public:
    enum class Kind { setting, tuningItem };

    /// The vehicle has to outlive it.
    StoredValue(const torv::Vehicle& vehicle, torv::AID aid, Kind kind);

    /// Why nothing can be stored, in one sentence; nothing when it can.
    [[nodiscard]] std::optional<std::string> whyNot() const;
    /// What the next connect does to a module that has been given this value, in one sentence; nothing when
    /// it leaves the value.
    [[nodiscard]] std::optional<std::string> whatUndoes(const torv::AV& value) const;
    /// False when it is not on disk. Not to be called where `whyNot` says something.
    [[nodiscard]] bool store(const torv::AV& value) const;

private:
    [[nodiscard]] std::string profileName() const;
    [[nodiscard]] std::optional<torv::ProfileDictionary> values() const;

    const torv::Vehicle& m_vehicle;
    const torv::AID m_aid;
    const Kind m_kind;
};

}  // namespace itorvctl
