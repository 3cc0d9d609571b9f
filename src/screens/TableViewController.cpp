#include "screens/TableViewController.h"

#include <algorithm>
#include <utility>

#include "screens/Ownership.h"
#include "screens/Touch.h"

namespace torv {

/// All rows of all sections, one after the other.
class TableViewController::Rows final : public QAbstractListModel {
public:
    enum Role { cellRole = Qt::UserRole + 1, sectionTitleRole, sectionRole, rowRole, firstRole, lastRole };

    struct Row {
        IndexPath path;
        QString sectionTitle;
        std::shared_ptr<TableViewCell> cell;
        bool first = false;
        bool last = false;
    };

    Rows() { keepOwnership(*this); }

    [[nodiscard]] const std::vector<Row>& all() const { return m_rows; }

    void replace(std::vector<Row> rows) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
        const auto& row = m_rows[static_cast<std::size_t>(index.row())];
        switch (role) {
            case cellRole:
                return QVariant::fromValue(row.cell.get());
            case sectionTitleRole:
                return row.sectionTitle;
            case sectionRole:
                return row.path.section;
            case rowRole:
                return row.path.row;
            case firstRole:
                return row.first;
            case lastRole:
                return row.last;
            default:
                return {};
        }
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override {
        return {{cellRole, "cell"},       {sectionTitleRole, "sectionTitle"},
                {sectionRole, "section"}, {rowRole, "row"},
                {firstRole, "isFirst"},   {lastRole, "isLast"}};
    }

private:
    std::vector<Row> m_rows;
};

TableViewController::TableViewController() : m_rows(std::make_unique<Rows>()) {}
TableViewController::~TableViewController() = default;

QAbstractItemModel* TableViewController::rows() {
    return m_rows.get();
}

void TableViewController::viewWillAppear() {
    reloadData();
}

void TableViewController::reloadData() {
    for (const auto& row : m_rows->all())
        m_reusable.push_back(row.cell);
    std::vector<Rows::Row> rows;
    for (int section = 0; section < numberOfSections(); ++section) {
        const int count = numberOfRowsInSection(section);
        for (int row = 0; row < count; ++row) {
            const IndexPath path{section, row};
            rows.push_back({path, titleForHeaderInSection(section), cellForRowAtIndexPath(path), row == 0,
                            row == count - 1});
        }
    }
    m_rows->replace(std::move(rows));
    m_reusable.clear();
}

std::shared_ptr<TableViewCell> TableViewController::dequeueReusableCell(const QString& identifier) {
    const auto found = std::find_if(m_reusable.begin(), m_reusable.end(), [&](const auto& cell) {
        return cell && cell->reuseIdentifier() == identifier;
    });
    if (found == m_reusable.end()) return nullptr;
    auto cell = std::move(*found);
    m_reusable.erase(found);
    return cell;
}

TableViewCell* TableViewController::cellAt(IndexPath path) const {
    const auto& rows = m_rows->all();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const Rows::Row& row) { return row.path == path; });
    return found == rows.end() ? nullptr : found->cell.get();
}

void TableViewController::touchRow(int section, int row) {
    queueTouch(this, [path = IndexPath{section, row}](TableViewController& self) {
        if (self.cellAt(path) && self.shouldHighlightRowAtIndexPath(path)) self.didSelectRowAtIndexPath(path);
    });
}

void TableViewController::touchAccessory(int section, int row) {
    queueTouch(this, [path = IndexPath{section, row}](TableViewController& self) {
        if (self.cellAt(path)) self.accessoryButtonTappedForRowAtIndexPath(path);
    });
}

}  // namespace torv
