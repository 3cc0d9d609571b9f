#include "screens/ProgressHUD.h"

#include <utility>

#include "screens/Ownership.h"
#include "screens/Touch.h"

namespace torv {

ProgressHUD::ProgressHUD(std::function<void()> cancel) : m_cancel(std::move(cancel)) {
    keepOwnership(*this);
}

void ProgressHUD::setTexts(const QString& label, const QString& details) {
    if (m_labelText == label && m_detailsLabelText == details) return;
    m_labelText = label;
    m_detailsLabelText = details;
    emit changed();
}

void ProgressHUD::setCancelHidden(bool hidden) {
    if (m_cancelHidden == hidden) return;
    m_cancelHidden = hidden;
    emit changed();
}

void ProgressHUD::touchCancel() {
    queueTouch(this, [](ProgressHUD& self) {
        if (self.cancellable()) self.m_cancel();
    });
}

}  // namespace torv
