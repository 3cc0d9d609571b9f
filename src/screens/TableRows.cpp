#include "screens/TableRows.h"

#include <algorithm>
#include <array>
#include <utility>

#include "screens/Ownership.h"

namespace torv {
namespace {

using Row = TableRows::Row;

/// What the look asks for, by name.
struct Role {
    const char* name;
    QVariant (*value)(const Row&);
};
const std::array<Role, 15> roles{{
    {"cell", [](const Row& row) { return QVariant::fromValue(row.cell.get()); }},
    {"section", [](const Row& row) { return QVariant{row.path.section}; }},
    {"row", [](const Row& row) { return QVariant{row.path.row}; }},
    {"rowHeight", [](const Row& row) { return QVariant{row.height}; }},
    {"isFirst", [](const Row& row) { return QVariant{row.first}; }},
    {"isLast", [](const Row& row) { return QVariant{row.last}; }},
    {"highlights", [](const Row& row) { return QVariant{row.highlights}; }},
    {"deletable", [](const Row& row) { return QVariant{row.deletable}; }},
    {"headerText", [](const Row& row) { return QVariant{row.header.text}; }},
    {"headerHeight", [](const Row& row) { return QVariant{row.header.height}; }},
    {"headerFontSize", [](const Row& row) { return QVariant{row.header.fontSize}; }},
    {"headerCentred", [](const Row& row) { return QVariant{row.header.centred}; }},
    {"footerText", [](const Row& row) { return QVariant{row.footer.text}; }},
    {"footerHeight", [](const Row& row) { return QVariant{row.footer.height}; }},
    {"footerFontSize", [](const Row& row) { return QVariant{row.footer.fontSize}; }},
}};
constexpr int firstRole = Qt::UserRole + 1;
const int confirmingRole = firstRole + static_cast<int>(roles.size());

}  // namespace

TableRows::TableRows() {
    keepOwnership(*this);
}

const TableRows::Row* TableRows::at(IndexPath path) const {
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& row) { return row.path == path; });
    return found == m_rows.end() ? nullptr : &*found;
}

void TableRows::replace(std::vector<Row> rows) {
    beginResetModel();
    std::swap(m_rows, rows);
    m_confirming.reset();
    endResetModel();
}

void TableRows::setConfirming(std::optional<IndexPath> path) {
    if (m_confirming == path) return;
    m_confirming = path;
    if (!m_rows.empty()) emit dataChanged(index(0), index(rowCount({}) - 1), {confirmingRole});
}

int TableRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant TableRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto& row = m_rows[static_cast<std::size_t>(index.row())];
    if (role == confirmingRole) return m_confirming == row.path;
    const auto number = static_cast<std::size_t>(role - firstRole);
    return role >= firstRole && number < roles.size() ? roles[number].value(row) : QVariant{};
}

QHash<int, QByteArray> TableRows::roleNames() const {
    QHash<int, QByteArray> names{{confirmingRole, "confirming"}};
    for (std::size_t i = 0; i < roles.size(); ++i)
        names.insert(firstRole + static_cast<int>(i), roles[i].name);
    return names;
}

}  // namespace torv
