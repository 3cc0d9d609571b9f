#pragma once

#include <QAbstractListModel>
#include <memory>
#include <optional>
#include <vector>

#include "screens/TableSection.h"
#include "screens/TableViewCell.h"

namespace torv {

/// All rows of all sections as the look draws them, one after the other. The first of a section bears its
/// header, the last its footer; a section without rows has one entry without a cell for both. Main thread.
class TableRows final : public QAbstractListModel {
public:
    struct Row {
        IndexPath path;
        /// Never null; one without height bears header and footer alone.
        std::shared_ptr<TableViewCell> cell;
        TableSectionView header;  ///< of the section, on its first row
        TableSectionView footer;  ///< on its last row
        double height = 0;
        bool first = false;
        bool last = false;
        bool highlights = true;
        bool deletable = false;
    };

    TableRows();

    [[nodiscard]] const std::vector<Row>& all() const { return m_rows; }
    [[nodiscard]] const Row* at(IndexPath path) const;
    void replace(std::vector<Row> rows);
    /// The row with its delete button out; nothing for none.
    void setConfirming(std::optional<IndexPath> path);

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<Row> m_rows;
    std::optional<IndexPath> m_confirming;
};

}  // namespace torv
