#pragma once

#include <QQuickImageProvider>

namespace torv {

/// Makes each picture at the very size at which it is shown, so that drawing it is a plain copy. Any thread.
///
///   picture/NAME.png       the file, in whichever of its three sizes has to be enlarged least
///   glyph/KEY              one sign of a read-out, by the key of its style and character
///   text/SIZE/TEXT         a text in the digital font, percent-encoded
///   label/COLOUR/TEXT      the same fitted into a box, closer and then cut where it is too long
class PictureProvider final : public QQuickImageProvider {
public:
    PictureProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace torv
