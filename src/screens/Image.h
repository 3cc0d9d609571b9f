#pragma once

#include <QSizeF>
#include <QString>

namespace torv {

/// A picture as a screen's logic knows it: what the look asks its image provider for, and its size in points.
struct Image {
    QString source;  ///< empty when there is none
    QSizeF size;

    explicit operator bool() const { return !source.isEmpty(); }
    friend bool operator==(const Image&, const Image&) = default;
};

/// The picture that ships under this file name, its size read from the file. None when there is no such file,
/// or none that is a PNG. Reads the disk at each call. Any thread.
[[nodiscard]] Image imageNamed(const QString& name);

}  // namespace torv
