#include "screens/TablePickerViewController.h"

#include <QScopedValueRollback>

namespace torv {

std::shared_ptr<TableViewCell> TablePickerViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("ValueCell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, identifier);
    cell->setText(m_values[path.row]);
    mark(*cell);
    return cell;
}

void TablePickerViewController::mark(TableViewCell& cell) const {
    cell.setMarks(cell.text() == m_selectedValue ? QStringList{"checkmark.png"} : QStringList{});
}

void TablePickerViewController::didSelectRowAtIndexPath(IndexPath path) {
    const auto self = shared_from_this();  // the delegate may block, and this screen be left meanwhile
    if (m_values[path.row] != m_selectedValue && !m_picking) {
        const QScopedValueRollback picking{m_picking, true};
        m_selectedValue = m_values[path.row];
        for (int row = 0; row < numberOfRowsInSection(0); ++row) {
            if (auto* const cell = cellAt({0, row})) mark(*cell);
        }
        if (m_delegate) m_delegate->tablePickerViewControllerDidPickValue(*this, m_selectedValue);
    }
    deselectRow();
}

}  // namespace torv

#include "moc_TablePickerViewController.cpp"
