#pragma once

#include <QStringList>

#include "screens/TableViewController.h"
#include "screens/TextValueGetterTableViewCell.h"

namespace torv {

class TextValueGetterViewController;

/// Checks what was typed and takes it. All operations may be left out: everything is then accepted, and
/// nobody closes the screen. Main thread.
class TextValueGetterViewControllerDelegate {
public:
    TextValueGetterViewControllerDelegate() = default;
    TextValueGetterViewControllerDelegate(const TextValueGetterViewControllerDelegate&) = delete;
    TextValueGetterViewControllerDelegate& operator=(const TextValueGetterViewControllerDelegate&) = delete;
    virtual ~TextValueGetterViewControllerDelegate() = default;

    /// The values have passed validation. It is the delegate that closes the screen.
    virtual void textValueGetterViewControllerDidGetValue(TextValueGetterViewController&) {}
    virtual bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController&) {
        return true;
    }
    // Of the alert after a refusal.
    virtual QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController&) {
        return {};
    }
    virtual QString textValueGetterViewControllerDidRequestMessageForValidationError(
        TextValueGetterViewController&) {
        return {};
    }
};

/// Texts that the user types, a field for each. Main thread. The delegate is not owned; a screen that pushes
/// this one outlives it.
class TextValueGetterViewController final : public torv::TableViewController, public TextFieldDelegate {
    Q_OBJECT

public:
    /// Of as many fields as there are values; none is one field.
    TextValueGetterViewController(QStringList values, QStringList defaultTexts)
        : m_values(std::move(values)), m_defaultTexts(std::move(defaultTexts)) {}
    [[nodiscard]] static std::shared_ptr<TextValueGetterViewController> initWithValuesAndDefaultTexts(
        const QStringList& values, const QStringList& defaultTexts);
    [[nodiscard]] static std::shared_ptr<TextValueGetterViewController> initWithValues(
        const QStringList& values);
    [[nodiscard]] static std::shared_ptr<TextValueGetterViewController> initWithDefaultTexts(
        const QStringList& defaultTexts);
    [[nodiscard]] static std::shared_ptr<TextValueGetterViewController> initForNumberOfValues(
        std::int32_t count = 1);

    /// What the fields held when editing last ended.
    [[nodiscard]] const QStringList& values() const { return m_values; }
    [[nodiscard]] const QStringList& defaultTexts() const { return m_defaultTexts; }
    void setInput(const TextValueGetterTableViewCell::Input& input) { m_input = input; }
    /// Text above the rows.
    void setDescriptionHeader(const QString& text) { m_descriptionHeader = text; }
    /// A hint below the field, once the screen has appeared.
    [[nodiscard]] QString toolTip() const { return m_toolTip; }
    void setToolTip(const QString& text) { m_toolTip = text; }
    /// Free for the delegate, which stores a row number here.
    [[nodiscard]] std::int32_t tag() const { return m_tag; }
    void setTag(std::int32_t tag) { m_tag = tag; }
    void setDelegate(TextValueGetterViewControllerDelegate* delegate) { m_delegate = delegate; }

    void save();

    void viewWillAppear() override;
    void viewDidAppear() override;
    [[nodiscard]] int numberOfRowsInSection(int) override;
    [[nodiscard]] TableSectionView viewForHeaderInSection(int) override;
    [[nodiscard]] TableSectionView viewForFooterInSection(int) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

    void textFieldDidEndEditing(TextValueGetterTableViewCell& cell) override;
    bool textFieldShouldClear(TextValueGetterTableViewCell& cell) override;
    void textFieldShouldReturn(TextValueGetterTableViewCell& cell) override;

private:
    [[nodiscard]] TextValueGetterTableViewCell* fieldInRow(int row) const;
    void endEditing();
    void refuse();

    QStringList m_values;
    QStringList m_defaultTexts;
    TextValueGetterTableViewCell::Input m_input;
    QString m_descriptionHeader;
    QString m_toolTip;
    bool m_appeared = false;
    bool m_saving = false;
    std::int32_t m_tag = 0;
    TextValueGetterViewControllerDelegate* m_delegate = nullptr;
};

}  // namespace torv
