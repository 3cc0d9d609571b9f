#include "fonts/BuiltInFont.h"

#include <ft2build.h>

#include <QResource>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace torv {
namespace {

/// What FreeType calls for each piece of an outline; its y grows upwards.
struct Pen {
    QPainterPath path;
    double scale = 1;

    [[nodiscard]] QPointF at(const FT_Vector* point) const {
        return {static_cast<double>(point->x) * scale, static_cast<double>(-point->y) * scale};
    }
    static Pen& of(void* user) { return *static_cast<Pen*>(user); }
};

constexpr FT_Outline_Funcs pieces{
    [](const FT_Vector* to, void* user) {
        auto& pen = Pen::of(user);
        pen.path.closeSubpath();
        pen.path.moveTo(pen.at(to));
        return 0;
    },
    [](const FT_Vector* to, void* user) {
        auto& pen = Pen::of(user);
        pen.path.lineTo(pen.at(to));
        return 0;
    },
    [](const FT_Vector* control, const FT_Vector* to, void* user) {
        auto& pen = Pen::of(user);
        pen.path.quadTo(pen.at(control), pen.at(to));
        return 0;
    },
    [](const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* user) {
        auto& pen = Pen::of(user);
        pen.path.cubicTo(pen.at(first), pen.at(second), pen.at(to));
        return 0;
    },
    0,
    0};

}  // namespace

struct BuiltInFont::Face {
    QByteArray contents;  // which the face reads from
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    double scale = 1;  // of the font's own units
};

BuiltInFont::BuiltInFont(const QString& resource, double size) : m_face(std::make_unique<Face>()) {
    m_face->contents = QResource{resource}.uncompressedData();
    if (FT_Init_FreeType(&m_face->library) != 0) return;
    if (FT_New_Memory_Face(m_face->library, reinterpret_cast<const FT_Byte*>(m_face->contents.constData()),
                           static_cast<FT_Long>(m_face->contents.size()), 0, &m_face->face) != 0)
        return;
    if (m_face->face->units_per_EM > 0) m_face->scale = size / m_face->face->units_per_EM;
}

BuiltInFont::~BuiltInFont() {
    if (m_face->library) FT_Done_FreeType(m_face->library);  // with its faces
}

std::optional<BuiltInFont::Glyph> BuiltInFont::glyph(char32_t character) const {
    if (!m_face->face) return std::nullopt;
    const auto index = FT_Get_Char_Index(m_face->face, character);
    if (index == 0 || FT_Load_Glyph(m_face->face, index, FT_LOAD_NO_SCALE) != 0) return std::nullopt;
    const auto& slot = *m_face->face->glyph;
    if (slot.format != FT_GLYPH_FORMAT_OUTLINE) return std::nullopt;
    Pen pen{{}, m_face->scale};
    auto outline = slot.outline;
    if (FT_Outline_Decompose(&outline, &pieces, &pen) != 0) return std::nullopt;
    pen.path.closeSubpath();
    return Glyph{pen.path, static_cast<double>(slot.advance.x) * m_face->scale};
}

}  // namespace torv
