#pragma once

#include "screens/KeyboardType.h"
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
    /// The button that clears the field; false when the delegate has done what there is to do.
    virtual bool textFieldShouldClear(TextValueGetterTableViewCell&) { return true; }
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
    Q_PROPERTY(int inputHints READ inputHints NOTIFY fieldChanged)
    Q_PROPERTY(bool clearsOnBeginEditing READ clearsOnBeginEditing NOTIFY fieldChanged)
    Q_PROPERTY(bool firstResponder READ isFirstResponder NOTIFY firstResponderChanged)

public:
    /// How the field helps with what is typed, as the platform's 64-bit numbers: 0 leaves it to the platform,
    /// 1 means no.
    struct Input {
        std::int64_t keyboardType = usualKeyboard;
        std::int64_t autocapitalizationType = 0;
        std::int64_t autocorrectionType = 0;
        bool secureTextEntry = false;
    };

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
    void setInput(const Input& input);
    /// Whether what is typed first wipes the old text.
    [[nodiscard]] bool clearsOnBeginEditing() const { return m_clearsOnBeginEditing; }
    void setClearsOnBeginEditing(bool clears) {
        m_clearsOnBeginEditing = clears;
        emit fieldChanged();
    }
    [[nodiscard]] bool secureTextEntry() const { return m_input.secureTextEntry; }
    /// Qt::InputMethodHints.
    [[nodiscard]] int inputHints() const;

    /// The field has the keyboard's focus, or gets it as soon as it is drawn.
    [[nodiscard]] bool isFirstResponder() const { return m_firstResponder; }
    void becomeFirstResponder() { setFirstResponder(true); }
    /// By the time this returns the text is what the field holds, with all that was being composed.
    void resignFirstResponder() { setFirstResponder(false); }

    // From the look.
    Q_INVOKABLE void editingBegun();
    Q_INVOKABLE void textEdited(const QString& text) { m_value = text; }
    Q_INVOKABLE void editingEnded(const QString& text);
    Q_INVOKABLE void clearTouched();
    Q_INVOKABLE void returnPressed(const QString& text);

signals:
    void fieldChanged();
    void firstResponderChanged();

private:
    void setFirstResponder(bool is);

    TextFieldDelegate* m_delegate = nullptr;
    QString m_value;
    QString m_placeholder;
    Input m_input;
    bool m_clearsOnBeginEditing = true;
    bool m_firstResponder = false;
};

}  // namespace torv
