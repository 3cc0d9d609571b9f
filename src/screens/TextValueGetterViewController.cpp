#include "screens/TextValueGetterViewController.h"

#include <QScopedValueRollback>
#include <algorithm>

namespace torv {
namespace {

// Points.
constexpr double headerWidth = 300;
constexpr int headerFontSize = 17;
constexpr double toolTipWidth = 300;
constexpr double toolTipHeight = 76;
constexpr int toolTipFontSize = 16;
constexpr int toolTipLines = 3;

QStringList emptyTexts(qsizetype count) {
    QStringList texts;
    texts.resize(std::max<qsizetype>(count, 0));
    return texts;
}

}  // namespace

using Screen = TextValueGetterViewController;

std::shared_ptr<Screen> Screen::initWithValuesAndDefaultTexts(const QStringList& values,
                                                              const QStringList& defaultTexts) {
    return std::make_shared<Screen>(values, defaultTexts);
}

std::shared_ptr<Screen> Screen::initWithValues(const QStringList& values) {
    return std::make_shared<Screen>(values, emptyTexts(values.size()));
}

std::shared_ptr<Screen> Screen::initWithDefaultTexts(const QStringList& defaultTexts) {
    return std::make_shared<Screen>(emptyTexts(defaultTexts.size()), defaultTexts);
}

std::shared_ptr<Screen> Screen::initForNumberOfValues(std::int32_t count) {
    return std::make_shared<Screen>(emptyTexts(count), QStringList{});
}

void Screen::viewWillAppear() {
    TableViewController::viewWillAppear();
    selectRowAtIndexPath({0, 0});
    setRightBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Save"), [this] { save(); }));
}

void Screen::viewDidAppear() {
    m_appeared = true;
    reloadData();
    if (auto* const field = fieldInRow(0)) field->becomeFirstResponder();
}

int Screen::numberOfRowsInSection(int) {
    return std::max(static_cast<int>(m_values.size()), 1);
}

TableSectionView Screen::viewForHeaderInSection(int) {
    return {.text = m_descriptionHeader, .width = headerWidth, .fontSize = headerFontSize, .bold = false};
}

TableSectionView Screen::viewForFooterInSection(int) {
    return {.text = m_appeared ? m_toolTip : QString{},
            .height = toolTipHeight,
            .width = toolTipWidth,
            .fontSize = toolTipFontSize,
            .lines = toolTipLines,
            .centred = true};
}

std::shared_ptr<TableViewCell> Screen::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("TextValueGetterTableViewCell");
    auto cell = std::dynamic_pointer_cast<TextValueGetterTableViewCell>(dequeueReusableCell(identifier));
    if (!cell) {
        cell = std::make_shared<TextValueGetterTableViewCell>(identifier);
        cell->setDelegate(this);
        cell->setInput(m_input);
    }
    cell->setPlaceholder(m_defaultTexts.value(path.row));
    cell->setValue(m_values.value(path.row));
    cell->setTag(path.row);
    return cell;
}

TextValueGetterTableViewCell* Screen::fieldInRow(int row) const {
    return dynamic_cast<TextValueGetterTableViewCell*>(cellAt({0, row}));
}

void Screen::didSelectRowAtIndexPath(IndexPath path) {
    if (auto* const field = fieldInRow(path.row)) field->becomeFirstResponder();
}

void Screen::textFieldDidEndEditing(TextValueGetterTableViewCell& cell) {
    if (cell.tag() < m_values.size()) {
        m_values[cell.tag()] = cell.value();
    } else if (m_values.isEmpty()) {
        m_values.append(cell.value());
    }
}

bool Screen::textFieldShouldClear(TextValueGetterTableViewCell& cell) {
    cell.setValue({});
    return false;
}

void Screen::textFieldShouldReturn(TextValueGetterTableViewCell& cell) {
    const int next = cell.tag() + 1 < numberOfRowsInSection(0) ? cell.tag() + 1 : 0;
    selectRowAtIndexPath({0, next});
    cell.resignFirstResponder();
    save();
}

void Screen::endEditing() {
    for (int row = 0; row < numberOfRowsInSection(0); ++row) {
        auto* const field = fieldInRow(row);
        if (!field) continue;
        field->resignFirstResponder();
        textFieldDidEndEditing(*field);
    }
}

void Screen::save() {
    if (m_saving) return;
    const auto self = shared_from_this();  // the delegate may block, and this screen be left meanwhile
    endEditing();
    if (!m_delegate) return;
    const QScopedValueRollback saving{m_saving, true};
    if (m_delegate->textValueGetterViewControllerShouldValidateValues(*this)) {
        m_delegate->textValueGetterViewControllerDidGetValue(*this);
    } else {
        refuse();
    }
}

void Screen::refuse() {
    auto alert = std::make_shared<AlertView>(
        m_delegate->textValueGetterViewControllerDidRequestTitleForValidationError(*this),
        m_delegate->textValueGetterViewControllerDidRequestMessageForValidationError(*this),
        QStringList{"Ok"});
    alert->setDismissedHandler([weak = weak_from_this()](int) {
        const auto screen = std::dynamic_pointer_cast<Screen>(weak.lock());
        if (auto* const field = screen ? screen->fieldInRow(0) : nullptr) field->becomeFirstResponder();
    });
    showAlert(std::move(alert));
}

}  // namespace torv

#include "moc_TextValueGetterViewController.cpp"
