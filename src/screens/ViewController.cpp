#include "screens/ViewController.h"

#include <QQmlEngine>
#include <utility>

namespace torv {
namespace {

void replace(std::unique_ptr<BarButtonItem>& place, std::unique_ptr<BarButtonItem> item) {
    if (item) QQmlEngine::setObjectOwnership(item.get(), QQmlEngine::CppOwnership);
    place = std::move(item);
}

}  // namespace

ViewController::ViewController() {
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
}

ViewController::~ViewController() = default;

void ViewController::setTitle(const QString& title) {
    if (m_title == title) return;
    m_title = title;
    emit titleChanged();
}

void ViewController::setLeftBarButton(std::unique_ptr<BarButtonItem> item) {
    replace(m_leftBarButton, std::move(item));
    emit barButtonsChanged();
}

void ViewController::setRightBarButton(std::unique_ptr<BarButtonItem> item) {
    replace(m_rightBarButton, std::move(item));
    emit barButtonsChanged();
}

void ViewController::loadViewIfNeeded() {
    if (m_loaded) return;
    m_loaded = true;
    viewDidLoad();
}

}  // namespace torv
