#include "screens/TableRows.h"

#include <algorithm>
#include <array>
#include <utility>

#include "screens/Ownership.h"

namespace torv {
namespace {

using Row = TableRows::Row;
using Entry = TableRows::Entry;
using Section = TableRows::Section;

/// What the look asks for, by name.
struct Role {
    const char* name;
    QVariant (*value)(const Row&, const Entry&, const Section&);
};
const std::array<Role, 10> roles{{
    {"cell",
     [](const Row& row, const Entry&, const Section&) { return QVariant::fromValue(row.cell.get()); }},
    {"section", [](const Row& row, const Entry&, const Section&) { return QVariant{row.path.section}; }},
    {"row", [](const Row& row, const Entry&, const Section&) { return QVariant{row.path.row}; }},
    {"rowHeight", [](const Row& row, const Entry&, const Section&) { return QVariant{row.height}; }},
    {"isFirst", [](const Row&, const Entry& entry, const Section&) { return QVariant{entry.first}; }},
    {"isLast", [](const Row&, const Entry& entry, const Section&) { return QVariant{entry.last}; }},
    {"highlights", [](const Row& row, const Entry&, const Section&) { return QVariant{row.highlights}; }},
    {"deletable", [](const Row& row, const Entry&, const Section&) { return QVariant{row.deletable}; }},
    {"header",
     [](const Row&, const Entry& entry, const Section& section) {
         return QVariant::fromValue(entry.first ? section.header : TableSectionView{});
     }},
    {"footer",
     [](const Row&, const Entry& entry, const Section& section) {
         return QVariant::fromValue(entry.last ? section.footer : TableSectionView{});
     }},
}};
constexpr int firstRole = Qt::UserRole + 1;
const int confirmingRole = firstRole + static_cast<int>(roles.size());

bool holds(const TableViewCell& cell, const QString& text) {
    return text.isEmpty() || cell.text().contains(text, Qt::CaseInsensitive) ||
           cell.detailText().contains(text, Qt::CaseInsensitive);
}

}  // namespace

TableRows::TableRows() {
    keepOwnership(*this);
}

const TableRows::Row* TableRows::at(IndexPath path) const {
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& row) { return row.path == path; });
    return found == m_rows.end() ? nullptr : &*found;
}

const TableRows::Row* TableRows::shownAt(int index) const {
    if (index < 0 || index >= rowCount({})) return nullptr;
    return &m_rows[m_shown[static_cast<std::size_t>(index)].row];
}

void TableRows::show() {
    m_shown.clear();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (!holds(*m_rows[i].cell, m_search)) continue;
        const bool first =
            m_shown.empty() || m_rows[m_shown.back().row].path.section != m_rows[i].path.section;
        if (first && !m_shown.empty()) m_shown.back().last = true;
        m_shown.push_back({.row = i, .first = first});
    }
    if (!m_shown.empty()) m_shown.back().last = true;
}

void TableRows::replace(std::vector<Section> sections, std::vector<Row> rows) {
    beginResetModel();
    m_sections = std::move(sections);
    m_rows = std::move(rows);
    m_confirming.reset();
    show();
    endResetModel();
}

void TableRows::search(const QString& text) {
    beginResetModel();
    m_search = text;
    show();
    endResetModel();
}

void TableRows::setConfirming(std::optional<IndexPath> path) {
    if (m_confirming == path) return;
    m_confirming = path;
    if (!m_shown.empty()) emit dataChanged(index(0), index(rowCount({}) - 1), {confirmingRole});
}

int TableRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QVariant TableRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto& entry = m_shown[static_cast<std::size_t>(index.row())];
    const auto& row = m_rows[entry.row];
    if (role == confirmingRole) return m_confirming == row.path;
    const auto number = static_cast<std::size_t>(role - firstRole);
    if (role < firstRole || number >= roles.size()) return {};
    return roles[number].value(row, entry, m_sections[static_cast<std::size_t>(row.path.section)]);
}

QHash<int, QByteArray> TableRows::roleNames() const {
    QHash<int, QByteArray> names{{confirmingRole, "confirming"}};
    for (std::size_t i = 0; i < roles.size(); ++i)
        names.insert(firstRole + static_cast<int>(i), roles[i].name);
    return names;
}

}  // namespace torv
