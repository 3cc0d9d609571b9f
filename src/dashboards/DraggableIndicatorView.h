#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>
#include <utility>

#include "attributes/TorvAttribute.h"
#include "dashboards/GaugeView.h"
#include "dashboards/View.h"
#include "screens/Image.h"

namespace torv {

/// What can be dropped on a place: it bears a sensor, and a gauge for it. Main thread.
class CarriedView : public torv::View {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")

public:
    using View::View;

    [[nodiscard]] virtual const std::shared_ptr<const TorvAttribute>& attribute() const = 0;
    [[nodiscard]] virtual const std::shared_ptr<GaugeView>& detailView() const = 0;
};

/// The copy of an indicator under the finger: its icon alone. Main thread.
class DraggableIndicatorView final : public torv::CarriedView {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString icon READ icon CONSTANT)
    Q_PROPERTY(double scale READ scale NOTIFY scaleChanged)

public:
    DraggableIndicatorView(Image icon, std::shared_ptr<const TorvAttribute> attribute,
                           std::shared_ptr<GaugeView> gauge)
        : CarriedView(QRectF{{}, icon.size}),
          m_icon(std::move(icon)),
          m_attribute(std::move(attribute)),
          m_detailView(std::move(gauge)) {}

    [[nodiscard]] const std::shared_ptr<const TorvAttribute>& attribute() const override {
        return m_attribute;
    }
    [[nodiscard]] const std::shared_ptr<GaugeView>& detailView() const override { return m_detailView; }
    [[nodiscard]] QString icon() const { return m_icon.source; }
    /// What it grows to about its centre.
    [[nodiscard]] double scale() const { return m_scale; }
    void setScale(double scale) {
        m_scale = scale;
        emit scaleChanged();
    }

signals:
    void scaleChanged();

private:
    const Image m_icon;
    const std::shared_ptr<const TorvAttribute> m_attribute;
    const std::shared_ptr<GaugeView> m_detailView;
    double m_scale = 1;
};

/// What can be picked up: tells what a drag carries; null when there is nothing to carry. Main thread.
class DraggableViewProtocol {
public:
    DraggableViewProtocol() = default;
    DraggableViewProtocol(const DraggableViewProtocol&) = delete;
    DraggableViewProtocol& operator=(const DraggableViewProtocol&) = delete;
    virtual ~DraggableViewProtocol() = default;

    [[nodiscard]] virtual std::shared_ptr<DraggableIndicatorView> draggingView() const = 0;
};

}  // namespace torv
