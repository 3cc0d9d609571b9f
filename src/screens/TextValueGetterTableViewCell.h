#pragma once

#include "screens/TableViewCell.h"

namespace torv {

class TextValueGetterTableViewCell;

/// Hears of the text field of a cell, whose value is then what the field holds. Main thread.
class TextFieldDelegate {
public:
    TextFieldDelegate() = default;
    TextFieldDelegate(const TextFieldDelegate&) = delete;
    TextFieldDelegate& operator=(const TextFieldDelegate&) = delete;
    virtual ~TextFieldDelegate() = default;

    virtual void textFieldDidEndEditing(TextValueGetterTableViewCell& cell) = 0;
    /// The return key.
    virtual void textFieldShouldReturn(TextValueGetterTableViewCell& cell) = 0;
};

/// A row that is a text field. Main thread. The delegate is not owned.
///
/// The old text is wiped as soon as the user types; a field that is left untyped keeps it.
class TextValueGetterTableViewCell final : public torv::TableViewCell {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString value READ value NOTIFY fieldChanged)
    Q_PROPERTY(QString placeholder READ placeholder NOTIFY fieldChanged)
    Q_PROPERTY(bool secure READ secureTextEntry NOTIFY fieldChanged)
    Q_PROPERTY(bool digitsOnly READ digitsOnly NOTIFY fieldChanged)

public:
    explicit TextValueGetterTableViewCell(const QString& reuseIdentifier)
        : TableViewCell(Style::Plain, reuseIdentifier) {}

    [[nodiscard]] QString control() const override { return QStringLiteral("TextFieldControl.qml"); }
    bool activate() override {
        becomeFirstResponder();
        return true;
    }
    void setDelegate(TextFieldDelegate* delegate) { m_delegate = delegate; }
    [[nodiscard]] QString value() const { return m_value; }
    void setValue(const QString& text);
    /// Shown gray while the field is empty.
    [[nodiscard]] QString placeholder() const { return m_placeholder; }
    void setPlaceholder(const QString& text);
    [[nodiscard]] bool secureTextEntry() const { return m_secureTextEntry; }
    void setSecureTextEntry(bool secure);
    /// The screen's own keyboard shows digits.
    [[nodiscard]] bool digitsOnly() const { return m_digitsOnly; }
    void setDigitsOnly(bool digits);
    /// Gives the field the keyboard's focus, or takes it away.
    void becomeFirstResponder() { emit focusWanted(true); }
    void resignFirstResponder() { emit focusWanted(false); }

    // From the look.
    Q_INVOKABLE void textEdited(const QString& text) { m_value = text; }
    Q_INVOKABLE void editingEnded(const QString& text);
    Q_INVOKABLE void returnPressed(const QString& text);

signals:
    void fieldChanged();
    void focusWanted(bool wanted);

private:
    TextFieldDelegate* m_delegate = nullptr;
    QString m_value;
    QString m_placeholder;
    bool m_secureTextEntry = false;
    bool m_digitsOnly = false;
};

}  // namespace torv
