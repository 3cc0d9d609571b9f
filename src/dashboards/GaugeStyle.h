#pragma once

#include <QRectF>
#include <array>
#include <cstdint>

namespace torv {

/// The faces of a gauge, by style: 0 the main dial, 1 to 4 the side dials, 5 and 6 tiles without a dial.
/// Lengths in points; the read-out's place counts from the gauge's centre, or from its corner on a tile.
struct GaugeStyle {
    enum class Side { left, right, fixed };
    enum class IconPlace { above, right, left, none, aside };

    bool tile = false;
    QRectF readOut{};
    std::int32_t displayStyle = 0;
    std::int32_t textAlignment = 0;
    Side unitSide = Side::fixed;  ///< edge of the read-out that the unit is flush with, 2 below it
    QPointF unit{};               ///< where a fixed one stands
    IconPlace icon = IconPlace::none;
    double nameInset = 0;  ///< of a tile's label, from the left and from the top
};

inline constexpr std::array<GaugeStyle, 7> gaugeStyles{{
    {.readOut = {25, -17, 100, 35},
     .displayStyle = 3,
     .textAlignment = 0,
     .unitSide = GaugeStyle::Side::right,
     .icon = GaugeStyle::IconPlace::above},
    {.readOut = {5, 0, 48, 17},
     .displayStyle = 1,
     .textAlignment = 0,
     .unitSide = GaugeStyle::Side::right,
     .icon = GaugeStyle::IconPlace::above},
    {.readOut = {5, 29, 48, 17},
     .displayStyle = 1,
     .textAlignment = 1,
     .unitSide = GaugeStyle::Side::left,
     .icon = GaugeStyle::IconPlace::right},
    {.readOut = {-48, 5, 48, 17},
     .displayStyle = 1,
     .textAlignment = 1,
     .unitSide = GaugeStyle::Side::left,
     .icon = GaugeStyle::IconPlace::above},
    {.readOut = {-53, 29, 48, 17},
     .displayStyle = 1,
     .textAlignment = 0,
     .unitSide = GaugeStyle::Side::right,
     .icon = GaugeStyle::IconPlace::left},
    {.tile = true,
     .readOut = {10, 25, 75, 17},
     .displayStyle = 1,
     .textAlignment = 1,
     .unitSide = GaugeStyle::Side::fixed,
     .unit = {10, 45},
     .icon = GaugeStyle::IconPlace::none,
     .nameInset = 5},
    {.tile = true,
     .readOut = {10, 30, 100, 17},
     .displayStyle = 2,
     .textAlignment = 1,
     .unitSide = GaugeStyle::Side::fixed,
     .unit = {10, 55},
     .icon = GaugeStyle::IconPlace::none,
     .nameInset = 10},
}};

inline constexpr GaugeStyle otherGaugeStyle{.readOut = {5, 0, 48, 17},
                                            .displayStyle = 1,
                                            .textAlignment = 0,
                                            .unitSide = GaugeStyle::Side::right,
                                            .icon = GaugeStyle::IconPlace::aside};
inline constexpr std::int32_t mainGaugeStyle = 0;

/// A number that names no style has the face of a side dial, with its icon aside.
[[nodiscard]] constexpr const GaugeStyle& gaugeStyle(std::int32_t style) {
    const auto index = static_cast<std::size_t>(style);
    return index < gaugeStyles.size() ? gaugeStyles[index] : otherGaugeStyle;
}

}  // namespace torv
