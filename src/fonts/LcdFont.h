// The font "LcdD": digits of seven segments from the DSEG family for read-outs, and a plain narrow face from
// DejaVu for words, which can't be read at arm's length in segments. Any thread.
#pragma once

#include <QPainterPath>
#include <QString>

#include "screens/Image.h"

namespace torv {

/// The outline of one sign, filling a box of this size as a digit does; empty for signs that show nothing.
[[nodiscard]] QPainterPath lcdGlyph(QChar sign, QSizeF box);

/// The outline of a text, its top left corner at the origin, and the size that it takes. `fontSize` as for
/// any font, in points or pixels.
[[nodiscard]] QPainterPath lcdText(const QString& text, double fontSize);
[[nodiscard]] QSizeF lcdTextSize(const QString& text, double fontSize);

/// A text as a picture of its own.
[[nodiscard]] Image lcdTextImage(const QString& text, double fontSize);

}  // namespace torv
