#include "fonts/LcdFont.h"

#include <QFont>
#include <QFontMetricsF>
#include <QTransform>
#include <QUrl>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

#include "fonts/BuiltInFont.h"

namespace torv {
namespace {

constexpr double drawnAt = 100;     // outlines are taken at this size and scaled
constexpr double condensed = 0.78;  // the width of the family's letters, for small round dials
constexpr double capitals = 0.74;   // height of a capital for each unit of font size
constexpr double glyphWidth = 0.84;
constexpr double glyphHeight = 0.86;

/// The outlines of single signs, each taken once; nothing for those that the built-in fonts lack. Any thread.
class Signs final {
public:
    std::optional<BuiltInFont::Glyph> glyph(QChar sign) {
        const std::scoped_lock lock{m_mutex};
        const auto known = m_glyphs.find(sign);
        return known == m_glyphs.end() ? m_glyphs.emplace(sign, made(sign)).first->second : known->second;
    }

private:
    /// Digits have seven segments, letters fourteen; other signs are not for segments at this size.
    std::optional<BuiltInFont::Glyph> made(QChar sign) const {
        const bool segments =
            sign.unicode() < 128 && (sign.isLetter() || sign == u'.' || sign == u'-' || sign == u' ');
        const auto& font = sign.isDigit() ? m_digits : segments ? m_letters : m_others;
        const auto glyph = font.glyph(sign.unicode());
        return glyph ? glyph : m_others.glyph(sign.unicode());
    }

    const BuiltInFont m_digits{QStringLiteral(":/fonts/DSEG7Classic-Bold.ttf"), drawnAt};
    const BuiltInFont m_letters{QStringLiteral(":/fonts/DSEG14Modern-Regular.ttf"), drawnAt};
    const BuiltInFont m_others{QStringLiteral(":/fonts/DejaVuSansCondensed-Bold.ttf"), drawnAt};
    std::mutex m_mutex;
    std::map<QChar, std::optional<BuiltInFont::Glyph>> m_glyphs;
};

/// Sign by sign; nothing where that is not how the text is written, or a sign is missing.
std::optional<BuiltInFont::Glyph> lineOfSigns(const QString& text) {
    static Signs signs;
    BuiltInFont::Glyph line;
    for (const auto sign : text) {
        if (sign.category() == QChar::Other_Control) continue;
        const bool leftwards = sign.direction() == QChar::DirR || sign.direction() == QChar::DirAL;
        const auto glyph = leftwards ? std::nullopt : signs.glyph(sign);
        if (!glyph) return std::nullopt;
        line.outline.addPath(glyph->outline.translated(line.advance, 0));
        line.advance += glyph->advance;
    }
    return line;
}

/// On one base line, from the origin to the right. Other scripts are left to the system's fonts.
BuiltInFont::Glyph line(const QString& text) {
    auto line = lineOfSigns(text);
    if (!line) {
        QFont any;
        any.setPixelSize(static_cast<int>(drawnAt));
        line.emplace().outline.addText(0, 0, any, text);
        line->advance = QFontMetricsF{any}.horizontalAdvance(text);
    }
    line->outline.setFillRule(Qt::WindingFill);
    return *std::move(line);
}

/// Of the digit that has all segments, base line at 0.
QRectF digitBox() {
    static const QRectF box = line(QStringLiteral("8")).outline.boundingRect();
    return box;
}

double scaleOf(double fontSize) {
    return fontSize * capitals / digitBox().height();
}

}  // namespace

QPainterPath lcdGlyph(QChar sign, QSizeF box) {
    if (!sign.isPrint() || sign.isSpace()) return {};
    const auto path = line(QString{sign}).outline;
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
    return QTransform{scale * condensed, 0, 0, scale, 0, fontSize * (1 + capitals) / 2}.map(
        line(text).outline);
}

QSizeF lcdTextSize(const QString& text, double fontSize) {
    return {line(text).advance * scaleOf(fontSize) * condensed, fontSize};
}

Image lcdTextImage(const QString& text, double fontSize) {
    if (text.isEmpty()) return {};
    return {
        QStringLiteral("text/%1/%2").arg(fontSize).arg(QString::fromLatin1(QUrl::toPercentEncoding(text))),
        lcdTextSize(text, fontSize)};
}

}  // namespace torv
