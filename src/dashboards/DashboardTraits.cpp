#include "dashboards/DashboardTraits.h"

#include <array>

namespace torv {
namespace {

using Place = DashboardTraits::Place;
using Backdrop = DashboardTraits::Backdrop;

// Layers from back to front: backdrops, places, the two side dials in front, the power buttons' backdrop, and
// the main dial, that covers them all in part.
enum Layer { backdrop, place, frontPlace, powerBackdrop, mainPlace };

constexpr Backdrop powerButtons{"BG_POWER-BUTTONS.png", {0, 256, 480, 64}, powerBackdrop};

constexpr std::array<Place, 5> firstPlaces{{
    {0, 0, true, -20, 160, {44, 0, 392, 392}, mainPlace},
    {4, 1, true, -30, 90, {-13, 106, 180, 180}, frontPlace},
    {3, 1, true, -10, 140, {25, -15, 180, 180}, place},
    {2, 2, true, 90, 200, {315, 106, 180, 180}, frontPlace},
    {1, 2, true, 35, 210, {278, -15, 180, 180}, place},
}};
constexpr std::array<Backdrop, 1> firstBackdrops{powerButtons};
constexpr std::array<int, 5> firstOrder{1, 2, 3, 4, 0};

constexpr Place tile(std::int32_t style, double x, double y, double width, double height) {
    return {style, 3, true, -30, 90, {x, y, width, height}, place};
}

constexpr Place smallTile(double x, double y) {
    return tile(5, x, y, 90, 63);
}
constexpr std::array<Place, 10> secondPlaces{{
    {0, 0, false, 0, 0, {65, 50, 350, 350}, mainPlace},
    smallTile(383, 55),
    smallTile(383, 123),
    smallTile(383, 198),
    smallTile(102, 10),
    smallTile(197, 10),
    smallTile(292, 10),
    smallTile(10, 55),
    smallTile(10, 123),
    smallTile(10, 198),
}};
constexpr std::array<Backdrop, 4> secondBackdrops{{
    {"horizontalrow.png", {97, 5, 290, 73}, backdrop},
    {"verticalrow.png", {5, 50, 100, 216}, backdrop},
    {"verticalrow.png", {378, 50, 100, 216}, backdrop},
    powerButtons,
}};
constexpr std::array<int, 10> secondOrder{1, 2, 3, 4, 5, 6, 7, 8, 9, 0};

constexpr Place largeTile(double x, double y) {
    return tile(6, x, y, 114, 80);
}
// The bottom row, the top row, the middle row: stored placements go by this order.
constexpr std::array<Place, 9> thirdPlaces{{
    largeTile(80, 190),
    largeTile(199, 190),
    largeTile(318, 190),
    largeTile(80, 10),
    largeTile(199, 10),
    largeTile(318, 10),
    largeTile(80, 100),
    largeTile(199, 100),
    largeTile(318, 100),
}};
constexpr std::array<Backdrop, 3> thirdBackdrops{{
    {"horizontalrow.png", {75, 5, 362, 90}, backdrop},
    {"horizontalrow.png", {75, 95, 362, 90}, backdrop},
    {"horizontalrow.png", {75, 185, 362, 90}, backdrop},
}};
constexpr std::array<int, 9> thirdOrder{0, 1, 2, 3, 4, 5, 6, 7, 8};

}  // namespace

const DashboardTraits& firstPageTraits() {
    static constexpr DashboardTraits traits{1, false, true,        true,           110,
                                            0, 20,    firstPlaces, firstBackdrops, firstOrder};
    return traits;
}

const DashboardTraits& secondPageTraits() {
    static constexpr DashboardTraits traits{
        2, true, true, true, 120, 15, 50, secondPlaces, secondBackdrops, secondOrder};
    return traits;
}

const DashboardTraits& thirdPageTraits() {
    static constexpr DashboardTraits traits{3, true, false,       false,          0,
                                            0, 75,   thirdPlaces, thirdBackdrops, thirdOrder};
    return traits;
}

}  // namespace torv
