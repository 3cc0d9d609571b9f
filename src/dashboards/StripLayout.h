#pragma once

#include <cmath>

namespace torv {

/// How items of one width stand in a strip that shows so many of them at a time. Points. Any thread.
struct StripLayout {
    double margin = 0;  ///< on either side of an item; negative when they overlap
    double step = 0;    ///< from one item to the next
    int pages = 0;

    [[nodiscard]] static StripLayout make(double stripWidth, double itemWidth, int perPage, int count) {
        if (count < 1 || perPage < 1 || stripWidth <= 0) return {};
        StripLayout layout;
        layout.margin = (stripWidth - itemWidth * perPage) / (2 * perPage);
        layout.step = itemWidth + 2 * layout.margin;
        layout.pages = static_cast<int>(std::ceil(count * layout.step / stripWidth));
        return layout;
    }
    [[nodiscard]] double x(int index) const { return margin + index * step; }
    /// The page that most of the strip shows.
    [[nodiscard]] static int pageAt(double offset, double stripWidth) {
        return static_cast<int>(std::floor((offset - stripWidth / 2) / stripWidth)) + 1;
    }
};

}  // namespace torv
