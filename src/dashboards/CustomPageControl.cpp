#include "dashboards/CustomPageControl.h"

#include <algorithm>

#include "screens/Image.h"

namespace torv {
namespace {

constexpr double flickDistance = 10;
constexpr double dotMargin = 5;  // a dot's view is this much larger than its picture

}  // namespace

QList<QRectF> dotRow(int count, QSizeF dot, double distance, QSizeF room) {
    QList<QRectF> frames;
    if (count < 1) return frames;
    const double step =
        count == 1 ? 0 : std::min(dot.width() + distance, (room.width() - dot.width()) / (count - 1));
    const double left = (room.width() - dot.width() - step * (count - 1)) / 2;
    for (int i = 0; i < count; ++i)
        frames.push_back({QPointF{left + step * i, (room.height() - dot.height()) / 2}, dot});
    return frames;
}

CustomPageControl::CustomPageControl(QRectF frame, CustomPageControlDelegate& delegate)
    : View(frame), m_delegate(delegate), m_dotSize(imageNamed(QStringLiteral("NORMAL_DOT.png")).size) {}

void CustomPageControl::setNumberOfPages(std::int32_t pages) {
    m_numberOfPages = std::max(pages, 0);
    m_currentPage = std::clamp(m_currentPage, 0, std::max(m_numberOfPages - 1, 0));
    emit dotsChanged();
}

void CustomPageControl::setCurrentPage(std::int32_t page) {
    if (page < 0 || page >= m_numberOfPages || page == m_currentPage) return;
    m_currentPage = page;
    emit dotsChanged();
}

void CustomPageControl::touchEnded(QPointF point) {
    const double up = m_touchPoint.y() - point.y();
    if ((up > flickDistance && !m_expanded) || (up < -flickDistance && m_expanded)) {
        m_expanded = !m_expanded;
        return m_delegate.customPageControlDidChangeState(*this);
    }
    if (!m_pagingEnabled) return;
    setCurrentPage(m_currentPage + (point.x() < frame().width() / 2 ? -1 : 1));
    m_delegate.customPageControlDidChangePage(*this);
}

QList<QRectF> CustomPageControl::dotFrames() const {
    const QSizeF dot{m_dotSize.width() + dotMargin, m_dotSize.height() + dotMargin};
    return dotRow(m_numberOfPages, dot, m_distanceBetweenDots, frame().size());
}

}  // namespace torv

#include "moc_CustomPageControl.cpp"
