#include "datalog/screens/GraphViewController.h"

#include <algorithm>
#include <cmath>

#include "datalog/screens/GraphSensorsViewController.h"
#include "screens/NavigationController.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::size_t firstCurves = 3;
constexpr double timeAxisHeight = 16;
constexpr double legendRowHeight = 30;
constexpr std::size_t legendColumns = 3;
constexpr double margin = 8;
constexpr double unitsHeight = 20;  // above the plot, where each scale tells its unit
constexpr double touchJitter = 8;
constexpr double zoomPerStep = 0.8;
constexpr int mostTimeMarks = 6;

QString number(double value, const RecordedSensor& sensor) {
    return QString::fromStdString(fixedText(value, sensor.decimaldigits));
}

/// Seconds as "1:02:03.4", as fine as the marks are apart.
QString markText(double seconds, double step) {
    const auto whole = std::floor(seconds + step / 100);
    auto text = lengthText(std::chrono::seconds{static_cast<std::int64_t>(whole)});
    if (step < 1) text += fixedText(std::max(seconds - whole, 0.0), step < 0.1 ? 2 : 1).substr(1);
    return QString::fromStdString(text);
}

}  // namespace

GraphViewController::GraphViewController(const QString& title, std::vector<GraphSensor> sensors,
                                         WallTime begun, double seconds)
    : m_sensors(std::move(sensors)), m_begun(begun), m_visible(TimeSpan{0, seconds}), m_room(viewSize()) {
    setTitle(title);
}

void GraphViewController::viewDidLoad() {
    BarButtons buttons;
    buttons.push_back(std::make_unique<BarButtonItem>("All", [this] { showAll(); }));
    if (!m_sensors.empty())
        buttons.push_back(std::make_unique<BarButtonItem>("Sensors", [this] { chooseSensors(); }));
    setRightBarButtons(std::move(buttons));
    for (std::size_t i = 0; i < m_sensors.size() && m_curves.size() < firstCurves; ++i) {
        setShown(i, true);
        if (m_curves.back().series.empty()) setShown(i, false);
    }
}

bool GraphViewController::isShown(std::size_t sensor) const {
    return std::ranges::find(m_curves, sensor, &Curve::sensor) != m_curves.end();
}

bool GraphViewController::setShown(std::size_t sensor, bool shown) {
    if (isShown(sensor) == shown) return true;
    if (shown && m_curves.size() == mostCurves) return false;
    if (!shown) {
        std::erase_if(m_curves, [sensor](const Curve& curve) { return curve.sensor == sensor; });
    } else {
        int free = 0;
        while (std::ranges::find(m_curves, free, &Curve::colour) != m_curves.end())
            ++free;
        std::string error;
        Curve curve{sensor, free, m_sensors[sensor].load(error), {}};
        if (!error.empty()) {
            showAlert(std::make_shared<AlertView>("A part of it can't be read", QString::fromStdString(error),
                                                  QStringList{"OK"}));
        }
        const auto range = curve.series.summary(curve.series.span()).value_or(CurveSeries::Summary{});
        const double limit = sensorOf(curve).limit().value_or(range.low);
        curve.axis = CurveAxis{std::min(range.low, limit), std::max(range.high, limit)};
        m_curves.push_back(std::move(curve));
    }
    emit changed();
    return true;
}

void GraphViewController::chooseSensors() {
    navigationController()->pushViewControllerAnimated(
        std::make_shared<GraphSensorsViewController>(
            std::static_pointer_cast<GraphViewController>(shared_from_this())),
        true);
}

void GraphViewController::setRoom(double width, double height) {
    const QSizeF room{width, height};
    if (m_room == room || room.isEmpty()) return;
    m_room = room;
    emit changed();
}

QRectF GraphViewController::plotFrame() const {
    const auto count = static_cast<double>(m_curves.size());
    const double left = std::max(std::ceil(count / 2) * axisWidth, margin);
    const double right = std::max(std::floor(count / 2) * axisWidth, margin);
    const auto rows = (std::max<std::size_t>(m_curves.size(), 1) + legendColumns - 1) / legendColumns;
    const double below = timeAxisHeight + static_cast<double>(rows) * legendRowHeight;
    return {left, unitsHeight, std::max(m_room.width() - left - right, 1.0),
            std::max(m_room.height() - unitsHeight - below, 1.0)};
}

double GraphViewController::axisLeft(std::size_t curve) const {
    const auto pairs = curve / 2;  // even ones stand on the left, odd ones on the right
    const auto place = static_cast<double>(pairs);
    const auto plot = plotFrame();
    return curve % 2 == 0 ? plot.left() - (place + 1) * axisWidth : plot.right() + place * axisWidth;
}

std::vector<GraphViewController::TimeMark> GraphViewController::timeMarks() const {
    std::vector<TimeMark> marks;
    const auto span = m_visible.span();
    const double step = timeStep(span.length(), mostTimeMarks);
    const double first = std::ceil(span.from / step);
    for (int i = 0; i <= mostTimeMarks && (first + i) * step <= span.to; ++i)
        marks.push_back({m_visible.placeOf((first + i) * step), markText((first + i) * step, step)});
    return marks;
}

QList<GraphLegend> GraphViewController::legend() const {
    QList<GraphLegend> rows;
    for (const auto& curve : m_curves) {
        const auto& sensor = sensorOf(curve);
        const auto now = m_cursor ? curve.series.valueAt(*m_cursor) : std::nullopt;
        const auto summary = curve.series.summary(m_visible.span());
        rows.push_back({.name = QString::fromStdString(sensor.name),
                        .now = now ? number(*now, sensor) + ' ' + QString::fromStdString(sensor.unit)
                                   : QString::fromStdString(sensor.unit),
                        .summary = summary
                                       ? QStringLiteral("%1 – %2   ø %3")
                                             .arg(number(summary->low, sensor), number(summary->high, sensor),
                                                  number(summary->mean, sensor))
                                       : QStringLiteral("nothing came"),
                        .colour = curve.colour});
    }
    return rows;
}

QString GraphViewController::time() const {
    if (!m_cursor) return {};
    const auto since = std::chrono::milliseconds{static_cast<std::int64_t>(*m_cursor * 1000)};
    return QString::fromStdString(clockText(m_begun + since));
}

QString GraphViewController::emptyText() const {
    return m_sensors.empty() ? QStringLiteral("Nothing has been logged yet.") : QString{};
}

double GraphViewController::placeOf(double x) const {
    const auto plot = plotFrame();
    return (x - plot.left()) / plot.width();
}

void GraphViewController::setFingers(const QList<double>& places) {
    if (places.isEmpty() && m_tap) point(*m_tap);
    const bool sameHand = static_cast<std::size_t>(places.size()) == m_fingers.size();
    if (!sameHand) {
        m_tap = places.size() == 1 && m_fingers.empty() ? std::optional{places.first()} : std::nullopt;
        m_fingers.clear();
        for (const double x : places)
            m_fingers.push_back({x, m_visible.timeAt(placeOf(x))});
        return;
    }
    if (m_tap && !places.isEmpty() && std::abs(places.first() - *m_tap) <= touchJitter) return;
    m_tap.reset();
    if (places.size() == 1) m_visible.keep(m_fingers[0].time, placeOf(places[0]));
    if (places.size() > 1)
        m_visible.keep(m_fingers[0].time, placeOf(places[0]), m_fingers[1].time, placeOf(places[1]));
    emit changed();
}

void GraphViewController::point(double x) {
    m_cursor = m_visible.timeAt(std::clamp(placeOf(x), 0.0, 1.0));
    emit changed();
}

void GraphViewController::zoom(double x, double steps) {
    m_visible.zoom(std::clamp(placeOf(x), 0.0, 1.0), std::pow(zoomPerStep, steps));
    emit changed();
}

void GraphViewController::step(double widths) {
    m_visible.keep(m_visible.span().from, -widths);
    emit changed();
}

void GraphViewController::showAll() {
    m_visible.showAll();
    emit changed();
}

}  // namespace torv

#include "moc_GraphViewController.cpp"
