#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

#include "dashboards/DraggableIndicatorView.h"
#include "dashboards/View.h"

namespace torv {

class DroppableView;

/// Hears of what a place takes and lets go of. Main thread.
class DroppableViewDelegate {
public:
    DroppableViewDelegate() = default;
    DroppableViewDelegate(const DroppableViewDelegate&) = delete;
    DroppableViewDelegate& operator=(const DroppableViewDelegate&) = delete;
    virtual ~DroppableViewDelegate() = default;

    virtual void droppableViewDidRetainDraggingView(DroppableView& place,
                                                    const std::shared_ptr<CarriedView>& view) = 0;
    virtual void droppableViewDidReleaseDroppedView(DroppableView& place,
                                                    const std::shared_ptr<CarriedView>& view) = 0;
};

/// A place on a page where a sensor can be dropped, and what has been dropped there. Main thread.
///
///   position  meaning  clear button
///   0         main     none: the main place can't be emptied
///   1         left     18, 10
///   2         right    60 from the far edge of a square, 10
///   3         digital  on the right upper corner, so that it covers no name
class DroppableView final : public torv::View {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString image READ image NOTIFY imageChanged)
    Q_PROPERTY(torv::GaugeView* gauge READ gaugeObject NOTIFY gaugeChanged)
    Q_PROPERTY(bool clearButtonShown READ clearButtonShown NOTIFY editingChanged)
    Q_PROPERTY(QRectF clearButtonFrame READ clearButtonFrame NOTIFY frameChanged)

public:
    enum State : std::int32_t { normal = 1, hovered = 2 };

    DroppableView(QRectF frame, std::int32_t position, DroppableViewDelegate& delegate);

    [[nodiscard]] std::int32_t position() const { return m_position; }
    [[nodiscard]] std::int32_t state() const { return m_state; }
    /// Anything but `normal` and `hovered` leaves the place without a picture.
    void setState(std::int32_t state);
    [[nodiscard]] bool isEditing() const { return m_editing; }
    void setEditing(bool editing);
    /// Stored only.
    [[nodiscard]] std::int32_t number() const { return m_number; }
    void setNumber(std::int32_t number) { m_number = number; }

    /// True. What the place held before is let go of first.
    bool dropView(std::shared_ptr<CarriedView> view);
    void clear();
    [[nodiscard]] const std::shared_ptr<CarriedView>& droppedView() const { return m_droppedView; }

    /// The gauge that stands on the place. Null takes it away.
    void setGauge(std::shared_ptr<GaugeView> gauge);
    [[nodiscard]] const std::shared_ptr<GaugeView>& gauge() const { return m_gauge; }
    [[nodiscard]] GaugeView* gaugeObject() const { return m_gauge.get(); }

    [[nodiscard]] QString image() const;
    [[nodiscard]] bool clearButtonShown() const;
    /// In the place's own coordinates.
    [[nodiscard]] QRectF clearButtonFrame() const;

signals:
    void imageChanged();
    void gaugeChanged();
    void editingChanged();

private:
    DroppableViewDelegate& m_delegate;
    const std::int32_t m_position;
    std::int32_t m_state = 0;
    bool m_editing = false;
    std::int32_t m_number = 0;
    std::shared_ptr<CarriedView> m_droppedView;
    std::shared_ptr<GaugeView> m_gauge;
};

}  // namespace torv
