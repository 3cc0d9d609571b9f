#pragma once

#include <QString>

namespace torv {

struct IndexPath {
    int section = 0;
    int row = 0;

    friend bool operator==(const IndexPath&, const IndexPath&) = default;
};

/// What stands above or below the rows of a section. Lengths are points.
struct TableSectionView {
    QString text;       ///< with none there is no view
    double height = 0;  ///< 0: as high as the text
    int fontSize = 16;
    bool centred = false;
};

}  // namespace torv
