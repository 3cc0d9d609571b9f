#include "datalog/screens/DataLogViewController.h"

#include <algorithm>

#include "datalog/DataLogCsv.h"
#include "datalog/Recorder.h"
#include "datalog/screens/GraphViewController.h"
#include "datalog/screens/RecordingsViewController.h"
#include "platform/Platform.h"
#include "screens/DocumentExport.h"
#include "screens/NavigationController.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::chrono::seconds refreshInterval{1};

/// Null while nothing has been logged.
const DataLog* logOf(iTorvAppDelegate& application) {
    const auto& log = application.dataLoggingDict();
    return log ? &*log : nullptr;
}

}  // namespace

void DataLogViewController::viewDidLoad() {
    setTitle(QStringLiteral("Data Logging"));
    BarButtons buttons;
    buttons.push_back(std::make_unique<BarButtonItem>("Export", [this] { ExportList(); }));
    buttons.push_back(std::make_unique<BarButtonItem>("Clear", [this] { ClearList(); }));
    setRightBarButtons(std::move(buttons));
    m_currentVehicle = m_appDelegate->currentVehicle();
    for (auto& sensor : m_currentVehicle.sensors()) {
        if (sensor.minmax != "off" && sensor.minmax != "none") m_attributes.push_back(std::move(sensor));
    }
    // Goes on for as long as the screen is there.
    Platform::current().runLoop().scheduleTimer(refreshInterval, true,
                                                [this, self = weak_from_this()](Timer& timer) {
                                                    const auto alive = self.lock();
                                                    if (!alive) return timer.invalidate();
                                                    UpdateList();
                                                });
}

void DataLogViewController::viewWillAppear() {
    TableViewController::viewWillAppear();
    showTools();
}

/// Made anew only when they change: one that is being touched stays.
void DataLogViewController::showTools() {
    const QString record = m_appDelegate->recorder().isRecording() ? "Stop recording" : "Record";
    const auto shown = toolbarItems();
    if (!shown.isEmpty() && shown.first().value<BarButtonItem*>()->title() == record) return;
    BarButtons tools;
    tools.push_back(std::make_unique<BarButtonItem>(record, [this] { this->record(); }));
    tools.push_back(std::make_unique<BarButtonItem>("Recordings", [this] {
        navigationController()->pushViewControllerAnimated(
            std::make_shared<RecordingsViewController>(m_appDelegate), true);
    }));
    tools.push_back(std::make_unique<BarButtonItem>("Graph", [this] { showGraph(); }));
    tools.push_back(
        std::make_unique<BarButtonItem>("Save to file", [this] { saveDocument(*this, document()); }));
    setToolbarItems(std::move(tools));
}

TableSectionView DataLogViewController::viewForHeaderInSection(int) {
    const auto& recorder = m_appDelegate->recorder();
    if (!recorder.isRecording()) return {};
    return {.text = QStringLiteral("Recording %1: %2, %3 values")
                        .arg(QString::fromStdString(recorder.name()),
                             QString::fromStdString(lengthText(recorder.length())),
                             QString::number(recorder.valueCount())),
            .fontSize = 14,
            .accented = true};
}

std::shared_ptr<TableViewCell> DataLogViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
    const auto& attribute = m_attributes[static_cast<std::size_t>(path.row)];
    const auto* log = logOf(*m_appDelegate);
    const auto text = [&](std::optional<float> value) {
        const auto unit = attribute.unit ? TorvAttribute::shortUnitDescriptionForUnitKey(*attribute.unit)
                                         : std::optional<std::string>{};
        return QString::fromStdString(
            fixedText(static_cast<double>(value.value_or(0)), attribute.decimaldigits) +
            unit.value_or(std::string{}));
    };
    const auto low = "Min:" + text(log ? log->minimum(attribute.aid) : std::nullopt);
    const auto high = "Max:" + text(log ? log->maximum(attribute.aid) : std::nullopt);
    cell->setText(QString::fromStdString(attribute.name.value_or(std::string{})));
    if (attribute.minmax == "high") cell->setDetailText(high);
    if (attribute.minmax == "low") cell->setDetailText(low);
    if (attribute.minmax == "both") cell->setDetailText(low + "   " + high);
    return cell;
}

void DataLogViewController::UpdateList() {
    showTools();
    reloadData();
}

Document DataLogViewController::document() const {
    std::vector<DataLogColumn> columns;
    const auto* log = logOf(*m_appDelegate);
    for (const auto& attribute : m_attributes) {
        columns.push_back(
            {attribute.name.value_or(std::string{}), attribute.decimaldigits,
             [log, aid = attribute.aid, next = std::size_t{0}]() mutable {
                 if (!log || next >= log->sampleCount(aid)) return std::optional<LoggedSample>{};
                 const auto sample = log->sample(aid, next++);
                 return std::optional{LoggedSample{static_cast<double>(sample.value), wallTime(sample.time)}};
             }});
    }
    Document document{
        .fileName = "iTorv-" + fileTimeText(wallNow()) + ".csv", .mimeType = "text/csv", .contents = {}};
    writeDataLogCsv(columns, [&document](std::string_view piece) {
        document.contents.insert(document.contents.end(), piece.begin(), piece.end());
        return true;
    });
    return document;
}

void DataLogViewController::ExportList() {
    mailDocument(*this, "Your Torvwerks Data Log Export", document());
}

void DataLogViewController::ClearList() {
    m_appDelegate->applicationDidReceiveMemoryWarning();  // it clears the log alone
    reloadData();
}

void DataLogViewController::record() {
    auto& recorder = m_appDelegate->recorder();
    if (recorder.isRecording()) {
        recorder.end();
    } else if (const auto trouble = m_appDelegate->beginRecording()) {
        showAlert(std::make_shared<AlertView>("Nothing is recorded", QString::fromStdString(*trouble),
                                              QStringList{"OK"}));
    }
    UpdateList();
}

void DataLogViewController::showGraph() {
    const auto* log = logOf(*m_appDelegate);
    const auto sensors = m_currentVehicle.sensors();
    std::optional<DataLog::Clock::time_point> begun;
    for (const auto& sensor : sensors) {
        if (!log || log->sampleCount(sensor.aid) == 0) continue;
        const auto first = log->sample(sensor.aid, 0).time;
        begun = std::min(begun.value_or(first), first);
    }
    std::vector<GraphSensor> shown;
    double length = 0;
    for (const auto& sensor : sensors) {
        const auto count = log ? log->sampleCount(sensor.aid) : 0;
        if (count == 0) continue;
        CurveSeries series;
        double last = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const auto sample = log->sample(sensor.aid, i);
            // The clock may have been put back meanwhile.
            last = std::max(last, std::chrono::duration<double>(sample.time - *begun).count());
            series.append(last, static_cast<double>(sample.value));
        }
        length = std::max(length, last);
        shown.push_back({recordedSensor(sensor), [series](std::string&) { return series; }});
    }
    navigationController()->pushViewControllerAnimated(
        std::make_shared<GraphViewController>(title(), std::move(shown),
                                              wallTime(begun.value_or(DataLog::Clock::time_point{})), length),
        true);
}

}  // namespace torv

#include "moc_DataLogViewController.cpp"
