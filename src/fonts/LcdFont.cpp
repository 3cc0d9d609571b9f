#include "fonts/LcdFont.h"

#include <QFont>
#include <QFontMetricsF>
#include <QTransform>
#include <QUrl>
#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

#include "fonts/BuiltInFont.h"

namespace torv {
namespace {

constexpr double drawnAt = 100;    // outlines are taken at this size and scaled
constexpr double narrowed = 0.92;  // the width of words, for small round dials
constexpr double capitals = 0.74;  // height of a capital for each unit of font size
constexpr double glyphWidth = 0.84;
constexpr double glyphHeight = 0.86;

enum class Face { readOut, words };

/// The outlines of single signs, each taken once; nothing for those that the built-in fonts lack. Any thread.
class Signs final {
public:
    std::optional<BuiltInFont::Glyph> glyph(QChar sign, Face face) {
        const std::scoped_lock lock{m_mutex};
        const auto known = m_glyphs.find({sign, face});
        return known == m_glyphs.end()
                   ? m_glyphs.emplace(std::pair{sign, face}, made(sign, face)).first->second
                   : known->second;
    }

private:
    /// Read-outs have digits of seven segments, with the point and the minus that go with them. Letters of
    /// segments can't be read at arm's length.
    std::optional<BuiltInFont::Glyph> made(QChar sign, Face face) const {
        const bool mark = sign == u'.' || sign == u'-' || sign == u' ';
        const auto& font = face == Face::words ? m_words
                           : sign.isDigit()    ? m_digits
                           : mark              ? m_marks
                                               : m_words;
        const auto glyph = font.glyph(sign.unicode());
        return glyph ? glyph : m_words.glyph(sign.unicode());
    }

    const BuiltInFont m_digits{QStringLiteral(":/fonts/DSEG7Classic-Bold.ttf"), drawnAt};
    const BuiltInFont m_marks{QStringLiteral(":/fonts/DSEG14Modern-Regular.ttf"), drawnAt};
    const BuiltInFont m_words{QStringLiteral(":/fonts/DejaVuSansCondensed-Bold.ttf"), drawnAt};
    std::mutex m_mutex;
    std::map<std::pair<QChar, Face>, std::optional<BuiltInFont::Glyph>> m_glyphs;
};

/// Sign by sign; nothing where that is not how the text is written, or a sign is missing.
std::optional<BuiltInFont::Glyph> lineOfSigns(const QString& text, Face face) {
    static Signs signs;
    BuiltInFont::Glyph line;
    for (const auto sign : text) {
        if (sign.category() == QChar::Other_Control) continue;
        const bool leftwards = sign.direction() == QChar::DirR || sign.direction() == QChar::DirAL;
        const auto glyph = leftwards ? std::nullopt : signs.glyph(sign, face);
        if (!glyph) return std::nullopt;
        line.outline.addPath(glyph->outline.translated(line.advance, 0));
        line.advance += glyph->advance;
    }
    return line;
}

/// On one base line, from the origin to the right. Other scripts are left to the system's fonts.
BuiltInFont::Glyph line(const QString& text, Face face) {
    auto line = lineOfSigns(text, face);
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
    static const QRectF box = line(QStringLiteral("8"), Face::readOut).outline.boundingRect();
    return box;
}

double heightOfCapitals() {
    static const double height = line(QStringLiteral("H"), Face::words).outline.boundingRect().height();
    return height;
}

double scaleOf(double fontSize) {
    return fontSize * capitals / heightOfCapitals();
}

}  // namespace

QPainterPath lcdGlyph(QChar sign, QSizeF box) {
    if (!sign.isPrint() || sign.isSpace()) return {};
    const auto path = line(QString{sign}, Face::readOut).outline;
    const auto digit = digitBox();
    const double base = box.height() * (1 + glyphHeight) / 2;
    if (sign.isLetter()) {
        const double y = box.height() * glyphHeight / heightOfCapitals();
        const auto shape = path.boundingRect();
        const double x = std::min(y, box.width() * glyphWidth / std::max(shape.width(), 1.0));
        return QTransform{x, 0, 0, y, box.width() / 2 - shape.center().x() * x, base}.map(path);
    }
    const double x = box.width() * glyphWidth / digit.width();
    const double y = box.height() * glyphHeight / digit.height();
    // Digits stand as the font has them; the point, which has no width of its own, in the middle.
    const auto middle = sign.isDigit() ? digit.center().x() : path.boundingRect().center().x();
    return QTransform{x, 0, 0, y, box.width() / 2 - middle * x, base}.map(path);
}

QPainterPath lcdText(const QString& text, double fontSize) {
    const double scale = scaleOf(fontSize);
    return QTransform{scale * narrowed, 0, 0, scale, 0, fontSize * (1 + capitals) / 2}.map(
        line(text, Face::words).outline);
}

QSizeF lcdTextSize(const QString& text, double fontSize) {
    return {line(text, Face::words).advance * scaleOf(fontSize) * narrowed, fontSize};
}

Image lcdTextImage(const QString& text, double fontSize) {
    if (text.isEmpty()) return {};
    return {
        QStringLiteral("text/%1/%2").arg(fontSize).arg(QString::fromLatin1(QUrl::toPercentEncoding(text))),
        lcdTextSize(text, fontSize)};
}

}  // namespace torv
