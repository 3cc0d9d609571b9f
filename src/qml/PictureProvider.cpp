#include "qml/PictureProvider.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <utility>

#include "dashboards/DigitalDisplayView.h"
#include "fonts/LcdFont.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "screens/Image.h"

namespace torv {
namespace {

constexpr int largestScale = 3;
constexpr double labelFontSize = 0.74;  // of the box's height
constexpr double smallest = 0.55;       // of that; smaller letters can't be read
constexpr int longestLabel = 200;

QImage pictureFromFile(const QString& name, QSize size) {
    const auto stem = name.endsWith(u".png") ? name.chopped(4) : name;
    const auto& resources = Platform::current().resources();
    const auto load = [&](int scale) {
        const auto file =
            QStringLiteral("images/") + stem + (scale > 1 ? QStringLiteral("@%1x").arg(scale) : QString{});
        const auto path = resources.pathForResourceOfType(file.toStdString(), "png");
        if (!path) return QImage{};
        QImageReader reader{QString::fromStdString(path->string()), "png"};
        reader.setAutoDetectImageFormat(false);  // or every plugin for pictures would be loaded first
        return reader.read();
    };
    const auto natural = imageNamed(name).size;
    int scale = 1;
    if (!natural.isEmpty()) {
        const double growth = std::max(size.width() / natural.width(), size.height() / natural.height());
        scale = std::clamp(static_cast<int>(std::ceil(growth - 0.05)), 1, largestScale);
    }
    auto image = load(scale);
    if (image.isNull() && scale > 1) image = load(1);
    if (image.isNull()) logLine("the picture " + stem.toStdString() + " can't be read");
    if (image.isNull()) return image;
    image = std::move(image).convertToFormat(QImage::Format_ARGB32_Premultiplied);  // as it is drawn
    if (size.isEmpty() || image.size() == size) return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage painted(QSize size, const QPainterPath& path, const QColor& colour) {
    QImage picture{size.expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied};
    picture.fill(Qt::transparent);
    QPainter painter{&picture};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, colour);
    return picture;
}

QImage glyph(const QString& key, QSize size) {
    for (const auto& style : displayStyles) {
        const auto format = QString::fromLatin1(style.keyFormat);
        const auto begin = format.left(format.indexOf(u'%'));
        if (!key.startsWith(begin)) continue;
        const auto code = key.mid(begin.size(), key.indexOf(u'.') - begin.size()).toUShort();
        return painted(
            size, lcdGlyph(QChar{code}, size),
            QColor::fromRgbF(static_cast<float>(style.colour[0]), static_cast<float>(style.colour[1]),
                             static_cast<float>(style.colour[2])));
    }
    return {};
}

QColor grey() {
    const auto level = static_cast<float>(lcdGrey[0]);
    return QColor::fromRgbF(level, level, level);
}

QImage text(const QString& words, double fontSize, QSize size) {
    const auto natural = lcdTextSize(words, fontSize);
    if (size.isEmpty()) size = natural.toSize();
    const double scale = size.height() / natural.height();
    return painted(size,
                   QTransform::fromScale(size.width() / natural.width(), scale).map(lcdText(words, fontSize)),
                   grey());
}

/// As large as the box allows, smaller where the text is long, and cut where it would be too small.
QImage label(const QString& words, const QColor& colour, QSize size) {
    const double fontSize = size.height() * labelFontSize;
    auto shown = words.left(longestLabel);
    while (shown.size() > 1 && lcdTextSize(shown, fontSize).width() * smallest > size.width())
        shown.chop(1);
    const double scale = std::min(1.0, size.width() / std::max(lcdTextSize(shown, fontSize).width(), 1.0));
    const auto fitted = QTransform::fromTranslate(0, (1 - scale) * size.height() / 2).scale(scale, scale);
    return painted(size, fitted.map(lcdText(shown, fontSize)), colour);
}

QString decodedText(const QString& text) {
    return QUrl::fromPercentEncoding(text.toUtf8());
}

}  // namespace

QImage PictureProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const auto kind = id.section(u'/', 0, 0);
    const auto rest = id.section(u'/', 1);
    const auto first = rest.section(u'/', 0, 0);
    const auto last = decodedText(rest.section(u'/', 1));
    QImage picture;
    if (kind == u"picture") picture = pictureFromFile(rest, requestedSize);
    if (kind == u"glyph") picture = glyph(rest, requestedSize);
    if (kind == u"text") picture = text(last, first.toDouble(), requestedSize);
    if (kind == u"label")
        picture = label(last, first == u"yellow" ? QColor{Qt::yellow} : grey(), requestedSize);
    if (size) *size = picture.size();
    return picture;
}

}  // namespace torv
