#pragma once

#include <memory>
#include <string>

#include "attributes/ValueRange.h"
#include "screens/TextValueGetterViewController.h"

namespace torv {

/// The screen on which a tuning item's value is typed. Its hint tells the usual range, also where another one
/// counts.
[[nodiscard]] inline std::shared_ptr<TextValueGetterViewController> exactValueScreen(
    const TorvAttribute& item, const std::string& value, std::int32_t tag,
    TextValueGetterViewControllerDelegate& delegate) {
    const QStringList text{QString::fromStdString(value)};
    auto screen = TextValueGetterViewController::initWithValuesAndDefaultTexts(text, text);
    screen->setInput({.keyboardType = numbersAndPunctuation});
    screen->setDelegate(&delegate);
    screen->setTitle(QString::fromStdString(item.name.value_or(std::string{})));
    screen->setTag(tag);
    const auto range = valueRange(item, {});
    if (range.isTold) {
        const auto unit = QString::fromStdString(unitText(item.unit));
        screen->setToolTip(
            QStringLiteral("This attribute min value is %1 %2 and it's max value is %3 %4.")
                .arg(QString::number(range.lowest), unit, QString::number(range.highest), unit));
    }
    return screen;
}

}  // namespace torv
