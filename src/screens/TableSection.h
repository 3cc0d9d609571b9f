#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QString>

namespace torv {

struct IndexPath {
    int section = 0;
    int row = 0;

    friend bool operator==(const IndexPath&, const IndexPath&) = default;
};

/// What stands above or below the rows of a section. Lengths are points.
struct TableSectionView {
    Q_GADGET
    QML_VALUE_TYPE(tableSectionView)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(double height MEMBER height)
    Q_PROPERTY(double width MEMBER width)
    Q_PROPERTY(int fontSize MEMBER fontSize)
    Q_PROPERTY(int lines MEMBER lines)
    Q_PROPERTY(bool bold MEMBER bold)
    Q_PROPERTY(bool centred MEMBER centred)
    Q_PROPERTY(bool accented MEMBER accented)

public:
    QString text;       ///< with none there is no view
    double height = 0;  ///< 0: as high as the text
    double width = 0;   ///< 0: as wide as the rows
    int fontSize = 16;
    int lines = 0;  ///< letters shrink to fit into so many; 0: as many as it takes
    bool bold = true;
    bool centred = false;
    bool accented = false;  ///< in the accent colour
};

}  // namespace torv
