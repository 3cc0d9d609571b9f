#include "dashboards/LcdFont.h"

#include <QFont>
#include <QFontMetricsF>
#include <QTransform>
#include <QUrl>

namespace torv {
namespace {

constexpr double drawnAt = 100;     // outlines are taken at this size and scaled
constexpr double condensed = 0.78;  // the width of the family's letters, for small round dials
constexpr double capitals = 0.74;   // height of a capital for each unit of font size
constexpr double glyphWidth = 0.84;
constexpr double glyphHeight = 0.86;

QFont fontOf(const char* family, bool bold) {
    QFont font;
    font.setFamilies({QString::fromLatin1(family), QStringLiteral("DejaVu Sans Condensed")});
    font.setBold(bold);
    font.setPixelSize(static_cast<int>(drawnAt));
    return font;
}

/// Digits have seven segments, letters fourteen; other signs are not for segments at this size.
const QFont& fontFor(QChar sign) {
    static const QFont digits = fontOf("DSEG7 Classic", true);
    static const QFont letters = fontOf("DSEG14 Modern", false);
    static const QFont others = fontOf("DejaVu Sans Condensed", true);
    const bool segments =
        sign.unicode() < 128 && (sign.isLetter() || sign == u'.' || sign == u'-' || sign == u' ');
    return sign.isDigit() ? digits : segments ? letters : others;
}

double advance(const QString& text) {
    double width = 0;
    for (const auto sign : text)
        width += QFontMetricsF{fontFor(sign)}.horizontalAdvance(sign);
    return width;
}

QPainterPath outline(const QString& text) {
    QPainterPath path;
    double x = 0;
    for (const auto sign : text) {
        path.addText(x, 0, fontFor(sign), sign);
        x += advance(sign);
    }
    path.setFillRule(Qt::WindingFill);
    return path;
}

/// Of the digit that has all segments, base line at 0.
QRectF digitBox() {
    static const QRectF box = outline(QStringLiteral("8")).boundingRect();
    return box;
}

double scaleOf(double fontSize) {
    return fontSize * capitals / digitBox().height();
}

}  // namespace

QPainterPath lcdGlyph(QChar sign, QSizeF box) {
    if (!sign.isPrint() || sign.isSpace()) return {};
    const auto path = outline(QString{sign});
    const auto digit = digitBox();
    const double x = box.width() * glyphWidth / digit.width();
    const double y = box.height() * glyphHeight / digit.height();
    // Digits stand as the font has them; the point, which has no width of its own, in the middle.
    const auto middle = sign.isLetterOrNumber() ? digit.center().x() : path.boundingRect().center().x();
    const double base = box.height() * (1 + glyphHeight) / 2;
    return QTransform{x, 0, 0, y, box.width() / 2 - middle * x, base}.map(path);
}

QPainterPath lcdText(const QString& text, double fontSize) {
    const double scale = scaleOf(fontSize);
    return QTransform{scale * condensed, 0, 0, scale, 0, fontSize * (1 + capitals) / 2}.map(outline(text));
}

QSizeF lcdTextSize(const QString& text, double fontSize) {
    return {advance(text) * scaleOf(fontSize) * condensed, fontSize};
}

Image lcdTextImage(const QString& text, double fontSize) {
    if (text.isEmpty()) return {};
    return {
        QStringLiteral("text/%1/%2").arg(fontSize).arg(QString::fromLatin1(QUrl::toPercentEncoding(text))),
        lcdTextSize(text, fontSize)};
}

}  // namespace torv
