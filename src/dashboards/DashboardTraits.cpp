#include "dashboards/DashboardTraits.h"

#include <array>

namespace torv {
namespace {

using Place = DashboardTraits::Place;
using Backdrop = DashboardTraits::Backdrop;

// Layers from back to front: backdrops, places, the two side dials in front, the power buttons' backdrop, and
// the main dial, which partly covers them all.
enum Layer { backdrop, place, frontPlace, powerBackdrop, mainPlace };

constexpr Backdrop powerButtons{
    .image = "BG_POWER-BUTTONS.png", .frame = {0, 256, 480, 64}, .layer = powerBackdrop};

constexpr std::array<Place, 5> firstPlaces{{
    {.style = 0,
     .position = 0,
     .setsDegrees = true,
     .minimumDegree = -20,
     .maximumDegree = 160,
     .frame = {44, 0, 392, 392},
     .layer = mainPlace},
    {.style = 4,
     .position = 1,
     .setsDegrees = true,
     .minimumDegree = -30,
     .maximumDegree = 90,
     .frame = {-13, 106, 180, 180},
     .layer = frontPlace},
    {.style = 3,
     .position = 1,
     .setsDegrees = true,
     .minimumDegree = -10,
     .maximumDegree = 140,
     .frame = {25, -15, 180, 180},
     .layer = place},
    {.style = 2,
     .position = 2,
     .setsDegrees = true,
     .minimumDegree = 90,
     .maximumDegree = 200,
     .frame = {315, 106, 180, 180},
     .layer = frontPlace},
    {.style = 1,
     .position = 2,
     .setsDegrees = true,
     .minimumDegree = 35,
     .maximumDegree = 210,
     .frame = {278, -15, 180, 180},
     .layer = place},
}};
constexpr std::array<Backdrop, 1> firstBackdrops{powerButtons};
constexpr std::array<int, 5> firstOrder{1, 2, 3, 4, 0};

constexpr Place tile(std::int32_t style, double x, double y, double width, double height) {
    return {.style = style,
            .position = 3,
            .setsDegrees = true,
            .minimumDegree = -30,
            .maximumDegree = 90,
            .frame = {x, y, width, height},
            .layer = place};
}

constexpr Place smallTile(double x, double y) {
    return tile(5, x, y, 90, 63);
}
constexpr std::array<Place, 10> secondPlaces{{
    {.style = 0, .position = 0, .frame = {65, 50, 350, 350}, .layer = mainPlace},
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
    {.image = "horizontalrow.png", .frame = {97, 5, 290, 73}, .layer = backdrop},
    {.image = "verticalrow.png", .frame = {5, 50, 100, 216}, .layer = backdrop},
    {.image = "verticalrow.png", .frame = {378, 50, 100, 216}, .layer = backdrop},
    powerButtons,
}};
constexpr std::array<int, 10> secondOrder{1, 2, 3, 4, 5, 6, 7, 8, 9, 0};

constexpr Place largeTile(double x, double y) {
    return tile(6, x, y, 114, 80);
}
// The bottom row, the top row, the middle row: stored placements go by this order.
constexpr std::array<Place, 9> thirdPlaces{{
    largeTile(64, 190),
    largeTile(183, 190),
    largeTile(302, 190),
    largeTile(64, 10),
    largeTile(183, 10),
    largeTile(302, 10),
    largeTile(64, 100),
    largeTile(183, 100),
    largeTile(302, 100),
}};
constexpr std::array<Backdrop, 3> thirdBackdrops{{
    {.image = "horizontalrow.png", .frame = {59, 5, 362, 90}, .layer = backdrop},
    {.image = "horizontalrow.png", .frame = {59, 95, 362, 90}, .layer = backdrop},
    {.image = "horizontalrow.png", .frame = {59, 185, 362, 90}, .layer = backdrop},
}};
constexpr std::array<int, 9> thirdOrder{0, 1, 2, 3, 4, 5, 6, 7, 8};

}  // namespace

const DashboardTraits& firstPageTraits() {
    static constexpr DashboardTraits traits{.number = 1,
                                            .hasMainPlace = true,
                                            .hasControls = true,
                                            .controlsLeft = 110,
                                            .toastTop = 20,
                                            .places = firstPlaces,
                                            .backdrops = firstBackdrops,
                                            .restoreOrder = firstOrder};
    return traits;
}

const DashboardTraits& secondPageTraits() {
    static constexpr DashboardTraits traits{.number = 2,
                                            .keyHasIndex = true,
                                            .hasMainPlace = true,
                                            .hasControls = true,
                                            .controlsLeft = 120,
                                            .powerLevelLeft = 15,
                                            .toastTop = 50,
                                            .places = secondPlaces,
                                            .backdrops = secondBackdrops,
                                            .restoreOrder = secondOrder};
    return traits;
}

const DashboardTraits& thirdPageTraits() {
    static constexpr DashboardTraits traits{.number = 3,
                                            .keyHasIndex = true,
                                            .toastTop = 75,
                                            .places = thirdPlaces,
                                            .backdrops = thirdBackdrops,
                                            .restoreOrder = thirdOrder};
    return traits;
}

}  // namespace torv
