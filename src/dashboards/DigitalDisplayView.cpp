#include "dashboards/DigitalDisplayView.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::size_t longestText = 5;
constexpr int significantDigits = 6;
constexpr std::int32_t leftAligned = 1;

/// As "%g" under every locale.
std::string shortestText(double value) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::general, significantDigits);
    std::string text{buffer.data(), end.ptr};
    if (text.size() > longestText) text.resize(longestText);
    return text;
}

const DisplayStyle& styleOf(std::int32_t style) {
    const auto index = static_cast<std::size_t>(style);
    return displayStyles[index < displayStyles.size() ? index : 0];
}

}  // namespace

DigitalDisplayView::DigitalDisplayView(QRectF frame) : View(frame) {
    m_glyphs.resize(cellCount);
    reorganizeViews();
}

void DigitalDisplayView::setValue(double value) {
    m_value = value;
    if (m_useSingleValue) return updateAsSingleValue();
    const auto text = shortestText(value);
    QStringList glyphs(cellCount);
    const auto first = m_textAlignment == leftAligned ? 0 : cellCount - static_cast<int>(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
        glyphs[first + static_cast<int>(i)] = imageForChar(static_cast<unsigned char>(text[i]));
    show(glyphs);
}

void DigitalDisplayView::updateAsSingleValue() {
    QStringList glyphs(cellCount);
    const auto sign = static_cast<char16_t>(longLongFromDouble(m_value) & 0xFFFF);
    glyphs[m_textAlignment == leftAligned ? 0 : cellCount - 1] = imageForChar(sign);
    show(glyphs);
}

void DigitalDisplayView::show(const QStringList& glyphs) {
    if (m_glyphs == glyphs) return;
    m_glyphs = glyphs;
    emit glyphsChanged();
}

void DigitalDisplayView::setStyle(std::int32_t style) {
    m_style = style;
    reorganizeViews();
}

void DigitalDisplayView::setTextAlignment(std::int32_t alignment) {
    m_textAlignment = alignment;
    reorganizeViews();
}

QString DigitalDisplayView::imageForChar(char16_t sign) const {
    return QString::asprintf(styleOf(m_style).keyFormat, static_cast<int>(sign));
}

QSizeF DigitalDisplayView::cellSize() const {
    return {styleOf(m_style).cellWidth, styleOf(m_style).glyphHeight};
}

QSizeF DigitalDisplayView::glyphSize() const {
    return {styleOf(m_style).glyphWidth, styleOf(m_style).glyphHeight};
}

void DigitalDisplayView::reorganizeViews() {
    const double step = styleOf(m_style).step;
    const double begin = m_textAlignment == leftAligned ? 0 : frame().width() - cellCount * step;
    m_offsets.clear();
    for (int i = 0; i < cellCount; ++i)
        m_offsets.push_back(begin + i * step);
    emit layoutChanged();
}

std::unique_ptr<DigitalDisplayView> DigitalDisplayView::copy() const {
    auto copy = std::make_unique<DigitalDisplayView>(frame());
    copy->setDecimalPlaces(m_decimalPlaces);
    copy->setValue(m_value);
    copy->setTextAlignment(m_textAlignment);
    copy->setStyle(m_style);
    return copy;
}

}  // namespace torv

#include "moc_DigitalDisplayView.cpp"
