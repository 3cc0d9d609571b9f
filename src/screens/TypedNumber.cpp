#include "screens/TypedNumber.h"

#include <QRegularExpression>

namespace torv {

namespace {

/// Without the signs that part thousands, where they do: from one to three digits before the first, three
/// behind each, and nothing of a fraction. Any blank will do where the locale has one.
QString withoutGroups(QString text, const QLocale& locale) {
    const auto sign = locale.groupSeparator();
    const bool isBlank = !sign.isEmpty() && sign[0].isSpace();
    const auto group = isBlank ? QStringLiteral("\\s") : QRegularExpression::escape(sign);
    const auto point = QRegularExpression::escape(locale.decimalPoint());
    if (group.isEmpty()) return text;
    const QRegularExpression thousands{
        QStringLiteral("(?<![0-9]|[0-9]%1|%2)[0-9]{1,3}(?:%1[0-9]{3})+(?![0-9]|%1[0-9])").arg(group, point),
        QRegularExpression::UseUnicodePropertiesOption};
    const auto found = thousands.match(text);
    if (!found.hasMatch()) return text;
    auto digits = found.captured();
    digits.remove(QRegularExpression{group, QRegularExpression::UseUnicodePropertiesOption});
    return text.replace(found.capturedStart(), found.capturedLength(), digits);
}

}  // namespace

std::string typedNumber(const QString& text, const QLocale& locale) {
    auto typed = text;
    typed.replace(locale.negativeSign(), QStringLiteral("-"));
    for (auto& sign : typed) {
        if (sign.category() == QChar::Number_DecimalDigit) sign = QChar{u'0' + sign.digitValue()};
    }
    return withoutGroups(typed, locale).replace(locale.decimalPoint(), QStringLiteral(".")).toStdString();
}

QString outOfRangeMessage(const QString& lowest, const QString& highest) {
    return QStringLiteral("The value you typed is out of range. Please use values between %1 and %2.")
        .arg(lowest, highest);
}

QString outOfRangeMessage(std::int64_t lowest, std::int64_t highest) {
    return outOfRangeMessage(QString::number(lowest), QString::number(highest));
}

}  // namespace torv
