#include "dashboards/DroppableView.h"

#include <array>
#include <utility>

#include "screens/Image.h"

namespace torv {
namespace {

constexpr QSizeF clearButtonSize{44, 44};
constexpr std::int32_t mainPosition = 0;
constexpr std::int32_t rightPosition = 2;
constexpr std::int32_t digitalPosition = 3;
constexpr double fromFarEdge = 60;
constexpr double overTheEdge = 29;  // the sign stands on the corner, and no name under it

struct PositionRow {
    const char* normal;
    const char* hovered;
    QPointF clearButton;
};
const std::array<PositionRow, 4> positions{{
    {.normal = "BG_CENTER.png", .hovered = "BG_CENTER_GLOW.png", .clearButton = {}},
    {.normal = "BG_LEFT-GAUGES.png", .hovered = "BG_LEFT-GAUGES_GLOW.png", .clearButton = {18, 10}},
    {.normal = "BG_RIGHT-GAUGES.png", .hovered = "BG_RIGHT-GAUGES_GLOW.png", .clearButton = {0, 10}},
    {.normal = "digibg.png", .hovered = "digibg_GLOW.png", .clearButton = {}},
}};

const PositionRow& rowOf(std::int32_t position) {
    return positions.at(static_cast<std::size_t>(position) % positions.size());
}

}  // namespace

DroppableView::DroppableView(QRectF frame, std::int32_t position, DroppableViewDelegate& delegate)
    : View(frame), m_delegate(delegate), m_position(position) {}

void DroppableView::setState(std::int32_t state) {
    if (m_state == state) return;
    m_state = state;
    emit imageChanged();
}

void DroppableView::setEditing(bool editing) {
    if (m_editing == editing) return;
    m_editing = editing;
    emit editingChanged();
}

bool DroppableView::dropView(std::shared_ptr<CarriedView> view) {
    clear();
    m_droppedView = std::move(view);
    m_delegate.droppableViewDidRetainDraggingView(*this, m_droppedView);
    return true;
}

void DroppableView::clear() {
    if (!m_droppedView) return;
    m_delegate.droppableViewDidReleaseDroppedView(*this, m_droppedView);
    m_droppedView = nullptr;
    setEditing(false);
}

void DroppableView::setGauge(std::shared_ptr<GaugeView> gauge) {
    const auto leaving = std::exchange(m_gauge, std::move(gauge));
    if (leaving != m_gauge) emit gaugeChanged();
}

QString DroppableView::image() const {
    const auto& row = rowOf(m_position);
    if (m_state == normal) return imageNamed(QString::fromLatin1(row.normal)).source;
    if (m_state == hovered) return imageNamed(QString::fromLatin1(row.hovered)).source;
    return {};
}

bool DroppableView::clearButtonShown() const {
    return m_editing && m_position != mainPosition;
}

QRectF DroppableView::clearButtonFrame() const {
    auto corner = rowOf(m_position).clearButton;
    if (m_position == rightPosition) corner.setX(frame().height() - fromFarEdge);
    if (m_position == digitalPosition)
        corner = {frame().width() - overTheEdge, overTheEdge - clearButtonSize.height()};
    return {corner, clearButtonSize};
}

}  // namespace torv

#include "moc_DroppableView.cpp"
