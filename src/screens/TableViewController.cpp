#include "screens/TableViewController.h"

#include <algorithm>
#include <utility>

#include "screens/Image.h"
#include "screens/NavigationController.h"
#include "screens/Touch.h"

namespace torv {
namespace {

constexpr double headerHeight = 50;
constexpr int noRow = -1;

}  // namespace

TableViewController::TableViewController() : m_rows(std::make_unique<TableRows>()) {}
TableViewController::~TableViewController() = default;

QAbstractItemModel* TableViewController::rows() {
    return m_rows.get();
}

TableSectionView TableViewController::viewForHeaderInSection(int section) {
    const auto title = titleForHeaderInSection(section);
    return title.isEmpty() ? TableSectionView{} : TableSectionView{.text = title, .height = headerHeight};
}

void TableViewController::viewWillAppear() {
    deselectRow();
    reloadData();
}

QString TableViewController::background() const {
    constexpr double exactWidth = 568;
    return imageNamed(screenWidth() == exactWidth ? QStringLiteral("BG_BASE-568h.png")
                                                  : QStringLiteral("BG_BASE.png"))
        .source;
}

void TableViewController::reloadData() {
    for (const auto& row : m_rows->all())
        m_reusable.push_back(row.cell);
    std::vector<TableRows::Section> sections;
    std::vector<TableRows::Row> rows;
    for (int section = 0; section < numberOfSections(); ++section) {
        const int count = numberOfRowsInSection(section);
        for (int row = 0; row < count; ++row) {
            const IndexPath path{section, row};
            rows.push_back({.path = path,
                            .cell = cellForRowAtIndexPath(path),
                            .height = heightForRowAtIndexPath(path),
                            .highlights = shouldHighlightRowAtIndexPath(path),
                            .deletable = canDeleteRowAtIndexPath(path)});
        }
        sections.push_back(
            {.header = viewForHeaderInSection(section), .footer = viewForFooterInSection(section)});
        if (count < 1 && !(sections.back().header.text.isEmpty() && sections.back().footer.text.isEmpty())) {
            rows.push_back({.path = {section, noRow},
                            .cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, QString{}),
                            .highlights = false});
        }
    }
    m_confirming.reset();
    const bool searchable = rows.size() > mostRowsWithoutSearch;
    m_rows->replace(std::move(sections), std::move(rows));
    for (const auto& row : m_rows->all())
        row.cell->setSelected(row.path == m_selected);
    if (std::exchange(m_searchable, searchable) != searchable) {
        m_rows->search({});
        emit searchableChanged();
    }
    // The look may still draw the cells that are not in use any more.
    queueTouch(this, [leaving = std::exchange(m_reusable, {})](TableViewController&) {});
}

void TableViewController::search(const QString& text) {
    queueTouch(this, [text](TableViewController& self) {
        self.confirm(std::nullopt);
        self.m_rows->search(self.m_searchable ? text : QString{});
    });
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
    const auto* row = m_rows->at(path);
    return row && path.row != noRow ? row->cell.get() : nullptr;
}

void TableViewController::selectRowAtIndexPath(IndexPath path) {
    deselectRow();
    if (auto* cell = cellAt(path)) {
        m_selected = path;
        cell->setSelected(true);
    }
}

void TableViewController::deselectRow() {
    const auto path = std::exchange(m_selected, std::nullopt);
    if (auto* cell = path ? cellAt(*path) : nullptr) cell->setSelected(false);
}

void TableViewController::setEditing(bool editing) {
    confirm(std::nullopt);
    if (m_editing == editing) return;
    m_editing = editing;
    emit editingChanged();
}

void TableViewController::setLoading(bool loading) {
    if (m_loading == loading) return;
    m_loading = loading;
    emit loadingChanged();
}

void TableViewController::confirm(std::optional<IndexPath> path) {
    m_confirming = path;
    m_rows->setConfirming(path);
}

void TableViewController::touchRow(int section, int row) {
    queueTouch(this, [path = IndexPath{section, row}](TableViewController& self) {
        if (self.m_confirming) return self.confirm(std::nullopt);
        // A second touch in the same turn: the first one's screen is over this one by now.
        const auto* const stack = self.navigationController();
        if (stack && stack->topViewController() != &self) return;
        if (!self.cellAt(path) || self.m_editing || !self.shouldHighlightRowAtIndexPath(path)) return;
        self.selectRowAtIndexPath(path);
        self.didSelectRowAtIndexPath(path);
    });
}

void TableViewController::touchAccessory(int section, int row) {
    queueTouch(this, [path = IndexPath{section, row}](TableViewController& self) {
        if (self.m_confirming) return self.confirm(std::nullopt);
        if (self.cellAt(path)) self.accessoryButtonTappedForRowAtIndexPath(path);
    });
}

void TableViewController::touchDeleteMark(int section, int row) {
    queueTouch(this, [path = IndexPath{section, row}](TableViewController& self) {
        if (self.m_confirming) return self.confirm(std::nullopt);
        if (self.m_editing && self.cellAt(path) && self.canDeleteRowAtIndexPath(path)) self.confirm(path);
    });
}

void TableViewController::swipeRow(int section, int row) {
    queueTouch(this, [path = IndexPath{section, row}](TableViewController& self) {
        if (self.m_confirming) return self.confirm(std::nullopt);
        if (self.cellAt(path) && self.canDeleteRowAtIndexPath(path)) self.confirm(path);
    });
}

void TableViewController::touchDelete(int section, int row) {
    queueTouch(this, [path = IndexPath{section, row}](TableViewController& self) {
        if (self.m_confirming != path) return;  // a touch that came too late
        self.confirm(std::nullopt);
        if (self.cellAt(path)) self.deleteRowAtIndexPath(path);
    });
}

std::optional<IndexPath> TableViewController::pathOfIndex(int index) const {
    const auto* row = m_rows->shownAt(index);
    return row ? std::optional{row->path} : std::nullopt;
}

void TableViewController::activateIndex(int index) {
    queueTouch(this, [path = pathOfIndex(index)](TableViewController& self) {
        auto* const cell = path ? self.cellAt(*path) : nullptr;
        if (!cell) return;
        if (self.m_confirming == path) return self.touchDelete(path->section, path->row);
        if (self.m_editing) return self.touchDeleteMark(path->section, path->row);
        if (!cell->activate()) self.touchRow(path->section, path->row);
    });
}

void TableViewController::chooseIndex(int index) {
    queueTouch(this, [index, path = pathOfIndex(index)](TableViewController& self) {
        const bool chooses =
            path && !self.m_confirming && !self.m_editing && self.shouldHighlightRowAtIndexPath(*path);
        if (chooses) return self.touchRow(path->section, path->row);
        self.activateIndex(index);
    });
}

void TableViewController::touchAccessoryOfIndex(int index) {
    const auto path = pathOfIndex(index);
    const auto* const cell = path ? cellAt(*path) : nullptr;
    if (cell && cell->accessory() == TableViewCell::Accessory::Detail)
        touchAccessory(path->section, path->row);
}

void TableViewController::deleteIndex(int index) {
    if (const auto path = pathOfIndex(index)) swipeRow(path->section, path->row);
}

}  // namespace torv

#include "moc_TableSection.cpp"
#include "moc_TableViewController.cpp"
