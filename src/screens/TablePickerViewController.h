#pragma once

#include <QStringList>

#include "screens/TableViewController.h"

namespace torv {

class TablePickerViewController;

/// Hears of a choice. Main thread.
class TablePickerViewControllerDelegate {
public:
    TablePickerViewControllerDelegate() = default;
    TablePickerViewControllerDelegate(const TablePickerViewControllerDelegate&) = delete;
    TablePickerViewControllerDelegate& operator=(const TablePickerViewControllerDelegate&) = delete;
    virtual ~TablePickerViewControllerDelegate() = default;

    /// It is the delegate that closes the screen.
    virtual void tablePickerViewControllerDidPickValue(TablePickerViewController& picker,
                                                       const QString& value) = 0;
};

/// A choice from a list of texts. A touch on what is chosen already is not reported. Main thread. The
/// delegate is not owned; a screen that pushes this one outlives it.
class TablePickerViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    TablePickerViewController(const QString& title, QStringList values, QString selectedValue)
        : m_values(std::move(values)), m_selectedValue(std::move(selectedValue)) {
        setTitle(title);
    }
    [[nodiscard]] static std::shared_ptr<TablePickerViewController> initWithTitleValuesSelectedValue(
        const QString& title, const QStringList& values, const QString& selectedValue) {
        return std::make_shared<TablePickerViewController>(title, values, selectedValue);
    }

    [[nodiscard]] const QStringList& values() const { return m_values; }
    [[nodiscard]] QString selectedValue() const { return m_selectedValue; }
    [[nodiscard]] std::int32_t tag() const { return m_tag; }
    void setTag(std::int32_t tag) { m_tag = tag; }
    void setDelegate(TablePickerViewControllerDelegate* delegate) { m_delegate = delegate; }

    [[nodiscard]] int numberOfRowsInSection(int) override { return static_cast<int>(m_values.size()); }
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return rowHeight; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral("There is nothing to choose from.");
    }

private:
    static constexpr double rowHeight = 50;

    void mark(TableViewCell& cell) const;

    const QStringList m_values;
    QString m_selectedValue;
    std::int32_t m_tag = 0;
    bool m_picking = false;
    TablePickerViewControllerDelegate* m_delegate = nullptr;
};

}  // namespace torv
