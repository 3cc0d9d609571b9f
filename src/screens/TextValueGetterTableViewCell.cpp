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

void TextValueGetterTableViewCell::setSecureTextEntry(bool secure) {
    m_secureTextEntry = secure;
    emit fieldChanged();
}

void TextValueGetterTableViewCell::setDigitsOnly(bool digits) {
    m_digitsOnly = digits;
    emit fieldChanged();
}

void TextValueGetterTableViewCell::editingEnded(const QString& text) {
    m_value = text;
    queueTouch(this, [](TextValueGetterTableViewCell& self) {
        if (self.m_delegate) self.m_delegate->textFieldDidEndEditing(self);
    });
}

void TextValueGetterTableViewCell::returnPressed(const QString& text) {
    m_value = text;
    queueTouch(this, [](TextValueGetterTableViewCell& self) {
        if (self.m_delegate) self.m_delegate->textFieldShouldReturn(self);
    });
}

}  // namespace torv
