#include "screens/TextValueGetterTableViewCell.h"

#include "screens/Touch.h"

namespace torv {

void TextValueGetterTableViewCell::setValue(const QString& text) {
    m_value = text;
    emit fieldChanged();
}

void TextValueGetterTableViewCell::setPlaceholder(const QString& text) {
    m_placeholder = text;
    emit fieldChanged();
}

void TextValueGetterTableViewCell::setInput(const Input& input) {
    m_input = input;
    emit fieldChanged();
}

int TextValueGetterTableViewCell::inputHints() const {
    constexpr std::int64_t no = 1;
    auto hints = hintsForKeyboard(m_input.keyboardType);
    if (m_input.autocorrectionType == no) hints |= Qt::ImhNoPredictiveText;
    if (m_input.autocapitalizationType == no) hints |= Qt::ImhNoAutoUppercase;
    if (m_input.secureTextEntry) hints |= Qt::ImhSensitiveData | Qt::ImhHiddenText;
    return static_cast<int>(hints);
}

void TextValueGetterTableViewCell::setFirstResponder(bool is) {
    if (m_firstResponder == is) return;
    m_firstResponder = is;
    emit firstResponderChanged();
}

void TextValueGetterTableViewCell::editingBegun() {
    m_firstResponder = true;
}

void TextValueGetterTableViewCell::editingEnded(const QString& text) {
    m_firstResponder = false;
    m_value = text;
    queueTouch(this, [](TextValueGetterTableViewCell& self) {
        if (self.m_delegate) self.m_delegate->textFieldDidEndEditing(self);
    });
}

void TextValueGetterTableViewCell::clearTouched() {
    queueTouch(this, [](TextValueGetterTableViewCell& self) {
        if (!self.m_delegate || self.m_delegate->textFieldShouldClear(self)) self.setValue({});
    });
}

void TextValueGetterTableViewCell::returnPressed(const QString& text) {
    m_value = text;
    queueTouch(this, [](TextValueGetterTableViewCell& self) {
        if (self.m_delegate) self.m_delegate->textFieldShouldReturn(self);
    });
}

}  // namespace torv

#include "moc_TextValueGetterTableViewCell.cpp"
