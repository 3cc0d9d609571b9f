#include "screens/AlertView.h"

#include <utility>

#include "screens/Ownership.h"
#include "screens/Touch.h"

namespace torv {

AlertView::AlertView(QString title, QString message, QStringList buttons)
    : m_title(std::move(title)), m_message(std::move(message)), m_buttons(std::move(buttons)) {
    keepOwnership(*this);
}

void AlertView::dismissWithClickedButtonIndexAnimated(int index, bool) {
    if (std::exchange(m_gone, true)) return;
    // Whoever hears of it may let go of this alert.
    const auto handler = std::move(m_dismissed);
    emit dismissed();
    if (handler) handler(index);
}

void AlertView::touchButton(int index) {
    queueTouch(this, [index](AlertView& self) {
        if (self.m_gone || index < 0 || index >= self.m_buttons.size()) return;
        const QPointer<AlertView> guard{&self};
        if (const auto clicked = self.m_clicked) clicked(index);
        if (guard) self.dismissWithClickedButtonIndexAnimated(index, true);
    });
}

}  // namespace torv

#include "moc_AlertView.cpp"
