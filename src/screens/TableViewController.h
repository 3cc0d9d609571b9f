#pragma once

#include <QAbstractListModel>
#include <QtQmlIntegration>
#include <memory>
#include <vector>

#include "screens/TableViewCell.h"
#include "screens/ViewController.h"

namespace torv {

struct IndexPath {
    int section = 0;
    int row = 0;

    friend bool operator==(const IndexPath&, const IndexPath&) = default;
};

/// A screen of sections with rows of cells; one QML file draws them all. Main thread.
///
/// `reloadData` asks for everything anew. The cells from before it are handed out again by
/// `dequeueReusableCell`, with all that they hold, in their old order.
class TableViewController : public torv::ViewController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)

public:
    TableViewController();
    ~TableViewController() override;

    [[nodiscard]] QString look() const override { return QStringLiteral("screens/TableScreen.qml"); }
    [[nodiscard]] QAbstractItemModel* rows();
    /// What stands in place of a table without rows.
    [[nodiscard]] virtual QString emptyText() const { return {}; }

    [[nodiscard]] virtual int numberOfSections() { return 1; }
    [[nodiscard]] virtual int numberOfRowsInSection(int section) = 0;
    [[nodiscard]] virtual QString titleForHeaderInSection(int) { return {}; }
    [[nodiscard]] virtual std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) = 0;
    [[nodiscard]] virtual bool shouldHighlightRowAtIndexPath(IndexPath) { return true; }
    virtual void didSelectRowAtIndexPath(IndexPath) {}
    virtual void accessoryButtonTappedForRowAtIndexPath(IndexPath) {}

    void reloadData();
    /// Null when none is left.
    [[nodiscard]] std::shared_ptr<TableViewCell> dequeueReusableCell(const QString& identifier);
    [[nodiscard]] TableViewCell* cellAt(IndexPath path) const;

    void viewWillAppear() override;
    Q_INVOKABLE void touchRow(int section, int row);
    Q_INVOKABLE void touchAccessory(int section, int row);

private:
    class Rows;

    std::unique_ptr<Rows> m_rows;
    std::vector<std::shared_ptr<TableViewCell>> m_reusable;
};

}  // namespace torv
