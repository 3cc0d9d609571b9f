#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QRectF>
#include <QString>

namespace torv {

/// A picture that stands still on a page, in points.
struct PagePicture {
    Q_GADGET
    QML_VALUE_TYPE(pagePicture)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString image MEMBER image)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QRectF frame MEMBER frame)
    Q_PROPERTY(int layer MEMBER layer)

public:
    QString name;  ///< of a button, else empty
    QString image;
    QString label{};  ///< of a button, for those who can't see it
    QRectF frame;
    int layer = 0;
};

}  // namespace torv
