#include "screens/TappableLabelTableViewCell.h"

#include "screens/Touch.h"

namespace torv {

void TappableLabelTableViewCell::setAdditionalLabel(const QString& text) {
    if (m_additionalLabel == text) return;
    m_additionalLabel = text;
    emit labelChanged();
}

void TappableLabelTableViewCell::setEnabled(bool enabled) {
    if (m_enabled == enabled) return;
    m_enabled = enabled;
    emit labelChanged();
}

void TappableLabelTableViewCell::touchLabel() {
    queueTouch(this, [](TappableLabelTableViewCell& self) {
        if (self.m_enabled && self.m_delegate) self.m_delegate->tappableLabelTableViewCellDidChange(self);
    });
}

}  // namespace torv

#include "moc_TappableLabelTableViewCell.cpp"
