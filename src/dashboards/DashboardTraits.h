#pragma once

#include <QRectF>
#include <cstdint>
#include <span>

namespace torv {

/// What differs between the dashboard pages. Lengths in points; every x counts from the left edge of a stage
/// 480 wide that is centred in the view.
struct DashboardTraits {
    struct Place {
        std::int32_t style;
        std::int32_t position;
        bool setsDegrees;  ///< on each drop; otherwise the gauge keeps those that it was made with
        std::int64_t minimumDegree;
        std::int64_t maximumDegree;
        QRectF frame;
        int layer;
    };
    struct Backdrop {
        const char* image;
        QRectF frame;
        int layer;
    };

    int number;         ///< 1 to 3
    bool keyHasIndex;   ///< of placements: where places share a style, their index tells them apart
    bool hasMainPlace;  ///< at index 0: never fades, and shows the default sensor when nothing is stored for
                        ///< it
    bool hasControls;   ///< the strip of lamps and the power buttons
    double controlsLeft;
    double powerLevelLeft;  ///< in the strip
    double toastTop;
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
