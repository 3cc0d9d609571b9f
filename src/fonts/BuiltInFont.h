#pragma once

#include <QPainterPath>
#include <QString>
#include <memory>
#include <optional>

namespace torv {

/// The outlines of one font that is built into the program. They are taken without Qt's fonts, which would
/// first read all that the system has and so delay the start. One thread at a time.
class BuiltInFont final {
public:
    struct Glyph {
        QPainterPath outline;  ///< base line at 0, to the right of the origin
        double advance = 0;
    };

    /// A TrueType or OpenType font among the program's resources. Lengths are those at this size in pixels.
    BuiltInFont(const QString& resource, double size);
    ~BuiltInFont();
    BuiltInFont(const BuiltInFont&) = delete;
    BuiltInFont& operator=(const BuiltInFont&) = delete;

    /// Nothing for a character that the font lacks.
    [[nodiscard]] std::optional<Glyph> glyph(char32_t character) const;

private:
    struct Face;
    const std::unique_ptr<Face> m_face;
};

}  // namespace torv
