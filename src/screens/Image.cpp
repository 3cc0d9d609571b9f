#include "screens/Image.h"

#include <QtEndian>
#include <array>
#include <cstring>
#include <fstream>

#include "platform/Platform.h"

namespace torv {
namespace {

/// Signature and first chunk, which holds width and height (RFC 2083).
constexpr std::size_t headerSize = 24;
constexpr std::array<char, 8> signature{'\x89', 'P', 'N', 'G', '\r', '\n', '\x1a', '\n'};

}  // namespace

Image imageNamed(const QString& name) {
    const auto stem = name.endsWith(u".png") ? name.chopped(4) : name;
    const auto file =
        Platform::current().resources().pathForResourceOfType("images/" + stem.toStdString(), "png");
    if (!file) return {};
    std::array<char, headerSize> header{};
    if (!std::ifstream{*file, std::ios::binary}.read(header.data(), headerSize)) return {};
    if (std::memcmp(header.data(), signature.data(), signature.size()) != 0) return {};
    return {QStringLiteral("picture/") + stem + QStringLiteral(".png"),
            {static_cast<double>(qFromBigEndian<quint32>(header.data() + 16)),
             static_cast<double>(qFromBigEndian<quint32>(header.data() + 20))}};
}

}  // namespace torv
