#include "screens/TypedNumber.h"

namespace torv {

std::string typedNumber(const QString& text, const QLocale& locale) {
    const auto decimalSign = locale.decimalPoint();
    auto typed = text;
    typed.replace(locale.negativeSign(), QStringLiteral("-"));
    QString plain;
    for (const auto sign : typed) {
        if (sign.category() == QChar::Number_DecimalDigit) {
            plain += QChar{u'0' + sign.digitValue()};
        } else {
            plain += sign == decimalSign ? QChar{u'.'} : sign;
        }
    }
    return plain.toStdString();
}

QString outOfRangeMessage(const QString& lowest, const QString& highest) {
    return QStringLiteral("The value you typed is out of range. Please use values between %1 and %2.")
        .arg(lowest, highest);
}

QString outOfRangeMessage(std::int64_t lowest, std::int64_t highest) {
    return outOfRangeMessage(QString::number(lowest), QString::number(highest));
}

}  // namespace torv
