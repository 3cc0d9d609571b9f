#include "screens/ProgressHUD.h"

#include <chrono>
#include <utility>

#include "screens/Ownership.h"
#include "screens/Touch.h"

namespace torv {
namespace {

constexpr std::chrono::seconds offerTime{5};

}  // namespace

ProgressHUD::ProgressHUD(std::function<void()> cancel) : m_cancel(std::move(cancel)) {
    keepOwnership(*this);
    m_offer = Platform::current().runLoop().scheduleTimer(offerTime, false, [this](Timer&) {
        m_backgroundOffered = true;
        emit backgroundChanged();
    });
}

ProgressHUD::~ProgressHUD() {
    m_offer->invalidate();
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

void ProgressHUD::touchBackground() {
    queueTouch(this, [](ProgressHUD& self) {
        if (!self.backgroundOffered()) return;
        self.m_inBackground = true;
        emit self.backgroundChanged();
    });
}

void ProgressHUD::touchCancel() {
    queueTouch(this, [](ProgressHUD& self) {
        if (self.cancellable()) self.m_cancel();
    });
}

}  // namespace torv

#include "moc_ProgressHUD.cpp"
