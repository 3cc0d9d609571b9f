#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "dashboards/DashboardTraits.h"
#include "support/AV.h"

namespace torv {

/// Which sensor stands on which place of a page, stored by vehicle, face and place. Main thread.
class PlacementStore final {
public:
    explicit PlacementStore(const DashboardTraits& traits) : m_traits(traits) {}

    /// "VEHICLE_STYLE_KEY", or "VEHICLE_STYLE_PLACE_PAGE_KEY" on pages whose places share a style.
    [[nodiscard]] std::string key(const std::optional<std::string>& vehicle, std::int32_t style,
                                  std::ptrdiff_t place) const;
    /// Nothing when no number is stored there.
    [[nodiscard]] static std::optional<AID> load(const std::string& key);
    static void save(AID aid, const std::string& key);
    static void remove(const std::string& key);

private:
    const DashboardTraits& m_traits;
};

}  // namespace torv
