#include "datalog/screens/RecordingsViewController.h"

#include <utility>

#include "datalog/RecordingReader.h"
#include "datalog/screens/GraphViewController.h"
#include "datalog/screens/RecordingViewController.h"
#include "platform/Platform.h"
#include "screens/NavigationController.h"

namespace torv {
namespace {

double secondsOf(DriveTime time) {
    return std::chrono::duration<double>(time).count();
}

CurveSeries seriesOf(const RecordingReader& reader, AID aid, std::string& error) {
    CurveSeries series;
    auto values = reader.valuesOf(aid);
    while (const auto value = values.next()) {
        if (value->value) series.append(secondsOf(value->time), *value->value);
    }
    error = values.error();
    return series;
}

}  // namespace

void showRecording(ViewController& screen, const std::filesystem::path& file) {
    std::string error;
    auto opened = RecordingReader::open(file, error);
    if (!opened) {
        return screen.showAlert(std::make_shared<AlertView>(
            "The recording can't be shown", QString::fromStdString(error), QStringList{"OK"}));
    }
    const auto reader = std::make_shared<const RecordingReader>(std::move(*opened));
    std::vector<GraphSensor> sensors;
    for (const auto& sensor : reader->drive().sensors)
        sensors.push_back(
            {sensor, [reader, aid = sensor.aid](std::string& why) { return seriesOf(*reader, aid, why); }});
    screen.navigationController()->pushViewControllerAnimated(
        std::make_shared<GraphViewController>(QString::fromStdString(reader->drive().name),
                                              std::move(sensors), reader->drive().begun,
                                              secondsOf(reader->length())),
        true);
}

void RecordingsViewController::viewDidLoad() {
    setTitle(QStringLiteral("Recordings"));
    setLoading(true);
    BarButtons tools;
    tools.push_back(std::make_unique<BarButtonItem>(
        "Delete", [this] { setEditing(!isEditing()); }, "picture/ICON_TRASH.png"));
    setToolbarItems(std::move(tools));
}

void RecordingsViewController::viewWillAppear() {
    TableViewController::viewWillAppear();
    load();
}

void RecordingsViewController::load() {
    const auto self = std::static_pointer_cast<RecordingsViewController>(shared_from_this());
    m_application->background().post([weak = std::weak_ptr{self}] {
        Platform::current().runLoop().performOnMainThread([weak, found = recordings()]() mutable {
            const auto screen = weak.lock();
            if (!screen) return;
            screen->m_recordings = std::move(found);
            screen->setLoading(false);
            screen->reloadData();
        });
    });
}

std::shared_ptr<TableViewCell> RecordingsViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
    const auto& shown = recording(path);
    const auto& recorder = m_application->recorder();
    const bool runs = recorder.isRecording() && recorder.file() == shown.file;
    cell->setText(QString::fromStdString(shown.name));
    cell->setDetailText(runs ? QStringLiteral("Recording now") : QString::fromStdString(shown.details()));
    cell->setDimmed(!shown.trouble.empty());
    cell->setAccessory(shown.trouble.empty() ? TableViewCell::Accessory::Detail
                                             : TableViewCell::Accessory::None);
    return cell;
}

bool RecordingsViewController::shouldHighlightRowAtIndexPath(IndexPath path) {
    return recording(path).trouble.empty();
}

void RecordingsViewController::didSelectRowAtIndexPath(IndexPath path) {
    showRecording(*this, recording(path).file);
    deselectRow();
}

void RecordingsViewController::accessoryButtonTappedForRowAtIndexPath(IndexPath path) {
    navigationController()->pushViewControllerAnimated(
        std::make_shared<RecordingViewController>(m_application, recording(path)), true);
}

void RecordingsViewController::deleteRowAtIndexPath(IndexPath path) {
    const auto why = removeRecording(recording(path).file);
    if (why.empty()) {
        m_recordings.erase(m_recordings.begin() + path.row);
    } else {
        showAlert(std::make_shared<AlertView>("The recording is still there", QString::fromStdString(why),
                                              QStringList{"OK"}));
    }
    reloadData();
}

}  // namespace torv

#include "moc_RecordingsViewController.cpp"
