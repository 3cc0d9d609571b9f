#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "screens/TableRows.h"
#include "screens/ViewController.h"

namespace torv {

/// A screen of sections with rows of cells; one QML file draws them all. Main thread.
///
/// `reloadData` asks for everything anew. The cells from before it are handed out again by
/// `dequeueReusableCell`, with all that they hold, in their old order. A chosen row stays selected until the
/// screen deselects it or appears anew.
///
///   Delete      entered by                          leaves by
///   Off         `setEditing(false)`                 `setEditing(true)`: Marks; swipe over a row: Confirming
///   Marks       `setEditing(true)`                  a touch on a row's mark: Confirming
///   Confirming  a row's mark or a swipe over it     its red button: the row is deleted; any other touch
class TableViewController : public torv::ViewController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    Q_PROPERTY(bool editing READ isEditing NOTIFY editingChanged)
    Q_PROPERTY(QString background READ background CONSTANT)
    Q_PROPERTY(bool searchable READ isSearchable NOTIFY searchableChanged)
    // Where the look was when it last showed the table: points from the top, and the keyboard's row or -1.
    Q_PROPERTY(double scrollOffset MEMBER m_scrollOffset NOTIFY scrolled)
    Q_PROPERTY(int focusedIndex MEMBER m_focusedIndex NOTIFY scrolled)

public:
    static constexpr double usualRowHeight = 44;  ///< what a finger can hit
    static constexpr double tallRowHeight = 54;   ///< for a title with a value or a sentence below it
    /// As high as the text of a plain row needs, in as many lines as it takes.
    static constexpr double heightOfItsText = -1;
    static constexpr int mostRowsWithoutSearch = 30;

    TableViewController();
    ~TableViewController() override;

    [[nodiscard]] QString look() const override { return QStringLiteral("screens/TableScreen.qml"); }
    [[nodiscard]] QAbstractItemModel* rows();
    /// What stands in place of a table without rows.
    [[nodiscard]] virtual QString emptyText() const { return {}; }
    /// The picture behind the rows; none leaves the plain ground.
    [[nodiscard]] virtual QString background() const;

    [[nodiscard]] virtual int numberOfSections() { return 1; }
    [[nodiscard]] virtual int numberOfRowsInSection(int section) = 0;
    [[nodiscard]] virtual QString titleForHeaderInSection(int) { return {}; }
    /// The title, bold and 50 high, unless a screen has a view of its own.
    [[nodiscard]] virtual TableSectionView viewForHeaderInSection(int section);
    [[nodiscard]] virtual TableSectionView viewForFooterInSection(int) { return {}; }
    [[nodiscard]] virtual double heightForRowAtIndexPath(IndexPath) { return usualRowHeight; }
    [[nodiscard]] virtual std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) = 0;
    [[nodiscard]] virtual bool shouldHighlightRowAtIndexPath(IndexPath) { return true; }
    virtual void didSelectRowAtIndexPath(IndexPath) {}
    virtual void accessoryButtonTappedForRowAtIndexPath(IndexPath) {}
    [[nodiscard]] virtual bool canDeleteRowAtIndexPath(IndexPath) { return false; }
    /// The user has confirmed; the screen deletes and reloads.
    virtual void deleteRowAtIndexPath(IndexPath) {}

    void reloadData();
    /// Null when none is left.
    [[nodiscard]] std::shared_ptr<TableViewCell> dequeueReusableCell(const QString& identifier);
    [[nodiscard]] TableViewCell* cellAt(IndexPath path) const;
    void selectRowAtIndexPath(IndexPath path);
    void deselectRow();
    [[nodiscard]] std::optional<IndexPath> selectedRow() const { return m_selected; }
    [[nodiscard]] bool isEditing() const { return m_editing; }
    void setEditing(bool editing);
    [[nodiscard]] std::optional<IndexPath> confirmingRow() const { return m_confirming; }
    /// While the rows are still on their way an activity indicator stands in their place.
    [[nodiscard]] bool isLoading() const { return m_loading; }
    void setLoading(bool loading);

    /// With more than 30 rows a field above them finds rows by their texts.
    [[nodiscard]] bool isSearchable() const { return m_searchable; }

    void viewWillAppear() override;

    // From the look.
    Q_INVOKABLE void search(const QString& text);
    Q_INVOKABLE void touchRow(int section, int row);
    Q_INVOKABLE void touchAccessory(int section, int row);
    Q_INVOKABLE void touchDeleteMark(int section, int row);
    Q_INVOKABLE void swipeRow(int section, int row);
    Q_INVOKABLE void touchDelete(int section, int row);
    // By the keyboard; the index counts the rows that the look draws, and -1 is none. Return chooses the row,
    // or presses its control where it can't be chosen; Space presses the control, or chooses where there is
    // none; Right presses the detail button.
    Q_INVOKABLE void chooseIndex(int index);
    Q_INVOKABLE void activateIndex(int index);
    Q_INVOKABLE void touchAccessoryOfIndex(int index);
    Q_INVOKABLE void deleteIndex(int index);

signals:
    void loadingChanged();
    void editingChanged();
    void searchableChanged();
    void scrolled();

private:
    void confirm(std::optional<IndexPath> path);
    [[nodiscard]] std::optional<IndexPath> pathOfIndex(int index) const;

    std::unique_ptr<TableRows> m_rows;
    std::vector<std::shared_ptr<TableViewCell>> m_reusable;
    std::optional<IndexPath> m_selected;
    std::optional<IndexPath> m_confirming;
    bool m_editing = false;
    bool m_loading = false;
    bool m_searchable = false;
    double m_scrollOffset = 0;
    int m_focusedIndex = -1;
};

}  // namespace torv
