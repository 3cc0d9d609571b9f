#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QList>
#include <QStringList>
#include <array>
#include <memory>

#include "dashboards/View.h"

namespace torv {

/// How the signs of a read-out look: by display style. Sizes in points, colours from 0 to 1.
struct DisplayStyle {
    const char* keyFormat;  ///< names a rendered sign; no file bears such a name
    double glyphWidth;
    double glyphHeight;
    std::array<double, 3> colour;
    double cellWidth;
    double step;  ///< from one cell to the next; cells of the two small styles overlap
};

inline constexpr std::array<double, 3> lcdBlue{0.678, 0.871, 0.894};
inline constexpr std::array<double, 3> lcdGrey{0.847, 0.847, 0.847};
inline constexpr std::array<DisplayStyle, 5> displayStyles{{
    {.keyFormat = "TXT_BL_SM_%i.png",
     .glyphWidth = 8,
     .glyphHeight = 13,
     .colour = lcdBlue,
     .cellWidth = 15,
     .step = 9},
    {.keyFormat = "TXT_BL_MD_%i.png",
     .glyphWidth = 10,
     .glyphHeight = 16,
     .colour = lcdBlue,
     .cellWidth = 10,
     .step = 10},
    {.keyFormat = "TXT_BL_MDL_%i.png",
     .glyphWidth = 13,
     .glyphHeight = 21,
     .colour = lcdBlue,
     .cellWidth = 13,
     .step = 13},
    {.keyFormat = "TXT_BL_LG_%i.png",
     .glyphWidth = 22,
     .glyphHeight = 34,
     .colour = lcdBlue,
     .cellWidth = 22,
     .step = 22},
    {.keyFormat = "TXT_GR_LG_%i.png",
     .glyphWidth = 8,
     .glyphHeight = 13,
     .colour = lcdGrey,
     .cellWidth = 15,
     .step = 9},
}};

/// A number as a row of five LCD signs. Main thread; one that a painter makes for itself lives on the
/// painter's.
///
/// The text is the number's shortest form with six digits, cut behind the fifth sign without rounding: a
/// number too long for the row reads too small, which is kept as it is. The signs are pictures that the look
/// renders once for each style and sign.
class DigitalDisplayView final : public torv::View {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QStringList glyphs READ glyphs NOTIFY glyphsChanged)
    Q_PROPERTY(double value READ value NOTIFY glyphsChanged)
    Q_PROPERTY(QList<double> offsets READ offsets NOTIFY layoutChanged)
    Q_PROPERTY(QSizeF cellSize READ cellSize NOTIFY layoutChanged)
    Q_PROPERTY(QSizeF glyphSize READ glyphSize NOTIFY layoutChanged)

public:
    static constexpr int cellCount = 5;
    static constexpr double cellTop = 2;

    explicit DigitalDisplayView(QRectF frame);

    [[nodiscard]] double value() const { return m_value; }
    void setValue(double value);
    [[nodiscard]] std::int32_t style() const { return m_style; }
    /// Moves the cells; the text follows with the next value. An unknown style counts as 0.
    void setStyle(std::int32_t style);
    /// 1 fills from the left, anything else from the right.
    [[nodiscard]] std::int32_t textAlignment() const { return m_textAlignment; }
    void setTextAlignment(std::int32_t alignment);
    /// The value is one character code and no number.
    [[nodiscard]] bool useSingleValue() const { return m_useSingleValue; }
    void setUseSingleValue(bool single) { m_useSingleValue = single; }
    /// Stored only.
    [[nodiscard]] std::int64_t decimalPlaces() const { return m_decimalPlaces; }
    void setDecimalPlaces(std::int64_t places) { m_decimalPlaces = places; }

    /// The picture of a sign in the present style.
    [[nodiscard]] QString imageForChar(char16_t sign) const;
    /// The copy shows signs of style 0 until its next value, and numbers only.
    [[nodiscard]] std::unique_ptr<DigitalDisplayView> copy() const;

    /// The cells from left to right; an empty name is a hidden cell.
    [[nodiscard]] const QStringList& glyphs() const { return m_glyphs; }
    [[nodiscard]] const QList<double>& offsets() const { return m_offsets; }
    [[nodiscard]] QSizeF cellSize() const;
    [[nodiscard]] QSizeF glyphSize() const;

signals:
    void glyphsChanged();
    void layoutChanged();

private:
    void reorganizeViews();
    void updateAsSingleValue();
    void show(const QStringList& glyphs);

    double m_value = -999999;
    std::int64_t m_decimalPlaces = 0;
    QStringList m_glyphs;
    QList<double> m_offsets;
    std::int32_t m_style = 0;
    std::int32_t m_textAlignment = 0;
    bool m_useSingleValue = false;
};

}  // namespace torv
