#pragma once

#include <QRectF>
#include <cstdint>
#include <span>

namespace torv {

/// What differs between the dashboard pages. Lengths in points; every x counts from the left edge of a stage
/// 480 wide that is centred in the view.
struct DashboardTraits {
    struct Place {
        std::int32_t style = 0;
        std::int32_t position = 0;
        bool setsDegrees = false;  ///< on each drop; otherwise the gauge keeps those that it was made with
        std::int64_t minimumDegree = 0;
        std::int64_t maximumDegree = 0;
        QRectF frame{};
        int layer = 0;
    };
    struct Backdrop {
        const char* image = "";
        QRectF frame{};
        int layer = 0;
    };

    int number = 0;            ///< 1 to 3
    bool keyHasIndex = false;  ///< of placements: where places share a style, their index tells them apart
    /// At index 0: never fades, and shows the default sensor when nothing is stored for it.
    bool hasMainPlace = false;
    bool hasControls = false;  ///< the strip of lamps and the power buttons
    double controlsLeft = 0;
    double powerLevelLeft = 0;  ///< in the strip
    double toastTop = 0;
    std::span<const Place> places;  ///< the order is part of what is stored
    std::span<const Backdrop> backdrops;
    std::span<const int> restoreOrder;
};

inline constexpr double stageWidth = 480;
inline constexpr double pageHeight = 320;

[[nodiscard]] const DashboardTraits& firstPageTraits();
[[nodiscard]] const DashboardTraits& secondPageTraits();
[[nodiscard]] const DashboardTraits& thirdPageTraits();

}  // namespace torv
