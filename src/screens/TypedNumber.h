#pragma once

#include <QLocale>
#include <QString>
#include <cstdint>
#include <string>

namespace torv {

/// A number as the user's locale writes it, in the form that is stored and sent: its own digits become those
/// from 0 to 9, its decimal sign a point, and its signs between thousands go. All else stays as it is typed.
/// Main thread.
[[nodiscard]] std::string typedNumber(const QString& text, const QLocale& locale = QLocale{});

// The alert after a typed value was refused.
inline const QString outOfRangeTitle = QStringLiteral("Value out of range");
[[nodiscard]] QString outOfRangeMessage(const QString& lowest, const QString& highest);
[[nodiscard]] QString outOfRangeMessage(std::int64_t lowest, std::int64_t highest);

}  // namespace torv
