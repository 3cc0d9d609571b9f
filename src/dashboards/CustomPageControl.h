#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QList>

#include "dashboards/View.h"

namespace torv {

class CustomPageControl;

/// Hears of what a touch on the dots has changed. Main thread.
class CustomPageControlDelegate {
public:
    CustomPageControlDelegate() = default;
    CustomPageControlDelegate(const CustomPageControlDelegate&) = delete;
    CustomPageControlDelegate& operator=(const CustomPageControlDelegate&) = delete;
    virtual ~CustomPageControlDelegate() = default;

    virtual void customPageControlDidChangePage(CustomPageControl& control) = 0;
    virtual void customPageControlDidChangeState(CustomPageControl& control) = 0;
};

/// The row of dots under the strip: a swipe up opens the picker, one down closes it, and a tap on either half
/// turns a page. A swipe in the direction that does nothing counts as a tap. Main thread; points.
class CustomPageControl final : public torv::View {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QList<QRectF> dotFrames READ dotFrames NOTIFY dotsChanged)
    Q_PROPERTY(int currentPage READ currentPage NOTIFY dotsChanged)
    Q_PROPERTY(int numberOfPages READ numberOfPages NOTIFY dotsChanged)
    Q_PROPERTY(bool hidden READ isHidden NOTIFY dotsChanged)

public:
    CustomPageControl(QRectF frame, CustomPageControlDelegate& delegate);

    [[nodiscard]] std::int32_t numberOfPages() const { return m_numberOfPages; }
    void setNumberOfPages(std::int32_t pages);
    [[nodiscard]] std::int32_t currentPage() const { return m_currentPage; }
    /// Ignores a page that does not exist.
    void setCurrentPage(std::int32_t page);
    void setDistanceBetweenDots(std::int32_t distance) { m_distanceBetweenDots = distance; }
    void setHidesForSinglePage(bool hides) { m_hidesForSinglePage = hides; }
    [[nodiscard]] bool isHidden() const { return m_numberOfPages < (m_hidesForSinglePage ? 2 : 1); }
    [[nodiscard]] bool expanded() const { return m_expanded; }
    void setExpanded(bool expanded) { m_expanded = expanded; }
    [[nodiscard]] bool pagingEnabled() const { return m_pagingEnabled; }
    void setPagingEnabled(bool enabled) { m_pagingEnabled = enabled; }

    /// In the control's own coordinates.
    void touchBegan(QPointF point) { m_touchPoint = point; }
    void touchEnded(QPointF point);

    /// Rectangles in a centred row, each 5 larger than its picture. Where there are too many they stand
    /// closer.
    [[nodiscard]] QList<QRectF> dotFrames() const;

signals:
    void dotsChanged();

private:
    CustomPageControlDelegate& m_delegate;
    QSizeF m_dotSize;
    std::int32_t m_numberOfPages = 0;
    std::int32_t m_currentPage = 0;
    std::int32_t m_distanceBetweenDots = 10;
    bool m_hidesForSinglePage = false;
    bool m_expanded = false;
    bool m_pagingEnabled = false;
    QPointF m_touchPoint;
};

/// The frames of a centred row of dots: each of `dot` size, `distance` apart, or closer so as to fit.
[[nodiscard]] QList<QRectF> dotRow(int count, QSizeF dot, double distance, QSizeF room);

}  // namespace torv
