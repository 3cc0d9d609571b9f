#pragma once

#include <QAbstractListModel>
#include <memory>
#include <optional>
#include <vector>

#include "screens/TableSection.h"
#include "screens/TableViewCell.h"

namespace torv {

/// All rows of all sections as the look draws them, one after the other, or those that a search has found.
/// The first of a section bears its header, the last its footer; a section without rows has one entry without
/// a cell for both. Main thread.
class TableRows final : public QAbstractListModel {
public:
    struct Section {
        TableSectionView header;
        TableSectionView footer;
    };
    struct Row {
        IndexPath path;
        /// Never null; one without height bears header and footer alone.
        std::shared_ptr<TableViewCell> cell;
        double height = 0;
        bool highlights = true;
        bool deletable = false;
    };

    TableRows();

    /// Also those that a search hides.
    [[nodiscard]] const std::vector<Row>& all() const { return m_rows; }
    [[nodiscard]] const Row* at(IndexPath path) const;
    /// By its place among those that are shown; null for none.
    [[nodiscard]] const Row* shownAt(int index) const;
    /// A section for each number that a row names.
    void replace(std::vector<Section> sections, std::vector<Row> rows);
    /// Only rows stay that have the text in one of theirs, in capitals or not; the empty text brings back
    /// all.
    void search(const QString& text);
    /// The row with its delete button out; nothing for none.
    void setConfirming(std::optional<IndexPath> path);

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// A row as it is shown, with what it bears of its section.
    struct Entry {
        std::size_t row = 0;
        bool first = false;
        bool last = false;
    };

private:
    void show();

    std::vector<Section> m_sections;
    std::vector<Row> m_rows;
    QString m_search;
    std::vector<Entry> m_shown;
    std::optional<IndexPath> m_confirming;
};

}  // namespace torv
