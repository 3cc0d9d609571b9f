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

    bool tile;
    double readOutX;
    double readOutY;
    double readOutWidth;
    double readOutHeight;
    std::int32_t displayStyle;
    std::int32_t textAlignment;
    Side unitSide;  ///< edge of the read-out that it is flush with, 2 below it; on tiles the place that
                    ///< follows
    double unitX;
    double unitY;
    IconPlace icon;
    double nameInset;  ///< of a tile's label, from the left and from the top
};

inline constexpr std::array<GaugeStyle, 7> gaugeStyles{{
    {false, 25, -17, 100, 35, 3, 0, GaugeStyle::Side::right, 0, 0, GaugeStyle::IconPlace::above, 0},
    {false, 5, 0, 48, 17, 1, 0, GaugeStyle::Side::right, 0, 0, GaugeStyle::IconPlace::above, 0},
    {false, 5, 29, 48, 17, 1, 1, GaugeStyle::Side::left, 0, 0, GaugeStyle::IconPlace::right, 0},
    {false, -48, 5, 48, 17, 1, 1, GaugeStyle::Side::left, 0, 0, GaugeStyle::IconPlace::above, 0},
    {false, -53, 29, 48, 17, 1, 0, GaugeStyle::Side::right, 0, 0, GaugeStyle::IconPlace::left, 0},
    {true, 10, 25, 75, 17, 1, 1, GaugeStyle::Side::fixed, 10, 45, GaugeStyle::IconPlace::none, 5},
    {true, 10, 30, 100, 17, 2, 1, GaugeStyle::Side::fixed, 10, 55, GaugeStyle::IconPlace::none, 10},
}};

inline constexpr GaugeStyle otherGaugeStyle{
    false, 5, 0, 48, 17, 1, 0, GaugeStyle::Side::right, 0, 0, GaugeStyle::IconPlace::aside, 0};
inline constexpr std::int32_t mainGaugeStyle = 0;

/// A number that names no style has the face of a side dial, with its icon aside.
[[nodiscard]] constexpr const GaugeStyle& gaugeStyle(std::int32_t style) {
    const auto index = static_cast<std::size_t>(style);
    return index < gaugeStyles.size() ? gaugeStyles[index] : otherGaugeStyle;
}

}  // namespace torv
