#pragma once

#include <QRectF>
#include <functional>
#include <optional>
#include <vector>

#include "datalog/CurveAxis.h"
#include "datalog/CurveSeries.h"
#include "datalog/RecordedDrive.h"
#include "datalog/VisibleSpan.h"
#include "screens/ViewController.h"

namespace torv {

/// A sensor that can be drawn. `load` is called whenever it is added to the graph; `error` then says what
/// could not be read.
struct GraphSensor {
    RecordedSensor sensor;
    std::function<CurveSeries(std::string& error)> load;
};

/// What stands beside the graph of one sensor: the numbers of the part that is shown.
struct GraphLegend {
    Q_GADGET
    QML_VALUE_TYPE(graphLegend)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString now MEMBER now)
    Q_PROPERTY(QString summary MEMBER summary)
    Q_PROPERTY(int colour MEMBER colour)

public:
    QString name;
    QString now;      ///< at the cursor, with its unit
    QString summary;  ///< lowest, highest and mean
    int colour = 0;   ///< which of the colours of curves
};

/// Sensors as curves over one time axis: six at the most, each with a scale and a colour of its own. Main
/// thread; the constant calls also on a thread that draws, while the main thread waits. Lengths are points
/// from the top left corner of the screen's room; drawing asks for pixels.
class GraphViewController final : public torv::ViewController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QList<torv::GraphLegend> legend READ legend NOTIFY changed)
    Q_PROPERTY(QString time READ time NOTIFY changed)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)

public:
    static constexpr std::size_t mostCurves = 6;

    /// From 0 to `seconds`, which is when the last value came; `begun` is the moment of 0.
    GraphViewController(const QString& title, std::vector<GraphSensor> sensors, WallTime begun,
                        double seconds);

    [[nodiscard]] QString look() const override { return QStringLiteral("datalog/GraphScreen.qml"); }
    void viewDidLoad() override;

    struct Curve {
        std::size_t sensor;
        int colour;  // below `mostCurves`, another one for each
        CurveSeries series;
        CurveAxis axis;
    };
    [[nodiscard]] const std::vector<Curve>& curves() const { return m_curves; }
    [[nodiscard]] const RecordedSensor& sensorOf(const Curve& curve) const {
        return m_sensors[curve.sensor].sensor;
    }
    [[nodiscard]] const std::vector<GraphSensor>& sensors() const { return m_sensors; }
    [[nodiscard]] bool isShown(std::size_t sensor) const;
    /// False when `mostCurves` others are shown already.
    bool setShown(std::size_t sensor, bool shown);

    [[nodiscard]] const VisibleSpan& visible() const { return m_visible; }
    [[nodiscard]] QRectF plotFrame() const;
    /// Left edge of the numbers of a curve's scale, `axisWidth` wide, beside the plot.
    [[nodiscard]] double axisLeft(std::size_t curve) const;
    static constexpr double axisWidth = 34;
    struct TimeMark {
        double place;  ///< of the plot's width
        QString text;
    };
    [[nodiscard]] std::vector<TimeMark> timeMarks() const;
    [[nodiscard]] std::optional<double> cursor() const { return m_cursor; }

    [[nodiscard]] QList<GraphLegend> legend() const;
    /// Of the cursor; nothing without one.
    [[nodiscard]] QString time() const;
    [[nodiscard]] QString emptyText() const;

    // From the look.
    Q_INVOKABLE void setRoom(double width, double height);
    /// Where the fingers are, after each move; none once the last has gone. One moves the graph, two also
    /// stretch it, and a short touch sets the cursor.
    Q_INVOKABLE void setFingers(const QList<double>& places);
    Q_INVOKABLE void point(double x);
    Q_INVOKABLE void zoom(double x, double steps);
    Q_INVOKABLE void step(double widths);
    Q_INVOKABLE void showAll();

signals:
    void changed();

private:
    [[nodiscard]] double placeOf(double x) const;
    void chooseSensors();

    const std::vector<GraphSensor> m_sensors;
    const WallTime m_begun;
    std::vector<Curve> m_curves;
    VisibleSpan m_visible;
    std::optional<double> m_cursor;  // seconds
    QSizeF m_room;

    struct Finger {
        double x;
        double time;  // what it holds
    };
    std::vector<Finger> m_fingers;
    std::optional<double> m_tap;  // where a touch began that has not become a drag
};

}  // namespace torv
