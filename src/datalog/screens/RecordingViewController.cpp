#include "datalog/screens/RecordingViewController.h"

#include <atomic>
#include <functional>
#include <utility>

#include "datalog/screens/RecordingsViewController.h"
#include "platform/Platform.h"
#include "screens/DocumentExport.h"
#include "screens/NavigationController.h"
#include "support/WholeFile.h"

namespace torv {
namespace {

enum Row { nameRow, graphRow };
constexpr int mailButton = 1;
constexpr int saveButton = 2;

using GoesOn = std::function<bool()>;

/// The document is held in memory as a whole, so its size is limited.
constexpr std::size_t mostBytes = 200'000'000;

std::string fileNameOf(const RecordingInfo& recording, const RecordingFormat& format) {
    return "iTorv-" + recording.file.stem().string() + std::string{format.suffix};
}

/// Why not, in a sentence, or empty. Any thread.
std::string exportTo(const RecordingInfo& recording, const RecordingFormat& format, const TextSink& write) {
    std::string error;
    const auto reader = RecordingReader::open(recording.file, error);
    return reader ? exportRecording(*reader, format.kind, write) : error;
}

Document documentOf(const RecordingInfo& recording, const RecordingFormat& format, const GoesOn& goesOn,
                    std::string& error) {
    Document document{
        .fileName = fileNameOf(recording, format), .mimeType = std::string{format.mimeType}, .contents = {}};
    error = exportTo(recording, format, [&](std::string_view piece) {
        document.contents.insert(document.contents.end(), piece.begin(), piece.end());
        return document.contents.size() <= mostBytes && goesOn();
    });
    if (document.contents.size() > mostBytes)
        error = "It would be larger than 200 MB, which is too much for a mail. Save it to a file.";
    return document;
}

/// A piece at a time, so that its length does not matter.
std::string saveTo(const std::filesystem::path& place, const RecordingInfo& recording,
                   const RecordingFormat& format, const GoesOn& goesOn) {
    WholeFile file{place};
    auto error =
        exportTo(recording, format, [&](std::string_view piece) { return goesOn() && file.write(piece); });
    if (error.empty() && !file.finish()) error = place.string() + " can't be written.";
    return error;
}

}  // namespace

RecordingViewController::RecordingViewController(std::shared_ptr<iTorvAppDelegate> application,
                                                 RecordingInfo recording)
    : m_application(std::move(application)), m_recording(std::move(recording)) {
    setTitle(QStringLiteral("Recording"));
}

int RecordingViewController::numberOfRowsInSection(int section) {
    return section == 0 ? graphRow + 1 : static_cast<int>(recordingFormats.size());
}

QString RecordingViewController::titleForHeaderInSection(int section) {
    return section == 0 ? QString::fromStdString(m_recording.details()) : QStringLiteral("Export");
}

std::shared_ptr<TableViewCell> RecordingViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::ValueBesideTitle, identifier);
    const bool isName = path == IndexPath{0, nameRow};
    const auto title = path.section == 1 ? recordingFormats[static_cast<std::size_t>(path.row)].title
                       : isName          ? std::string_view{"Name"}
                                         : std::string_view{"Graph"};
    cell->setText(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
    cell->setDetailText(isName ? QString::fromStdString(m_recording.name) : QString{});
    cell->setAccessory(TableViewCell::Accessory::Disclosure);
    return cell;
}

void RecordingViewController::didSelectRowAtIndexPath(IndexPath path) {
    if (path.section == 1) {
        ask(recordingFormats[static_cast<std::size_t>(path.row)]);
    } else if (path.row == nameRow) {
        rename();
    } else {
        showRecording(*this, m_recording.file);
    }
    deselectRow();
}

void RecordingViewController::rename() {
    const QStringList name{QString::fromStdString(m_recording.name)};
    const auto screen = TextValueGetterViewController::initWithValuesAndDefaultTexts(name, name);
    screen->setTitle(QStringLiteral("Name"));
    screen->setDelegate(this);
    navigationController()->pushViewControllerAnimated(screen, true);
}

bool RecordingViewController::textValueGetterViewControllerShouldValidateValues(
    TextValueGetterViewController& screen) {
    return !screen.values().value(0).trimmed().isEmpty();
}

QString RecordingViewController::textValueGetterViewControllerDidRequestTitleForValidationError(
    TextValueGetterViewController&) {
    return QStringLiteral("A recording needs a name");
}

void RecordingViewController::textValueGetterViewControllerDidGetValue(
    TextValueGetterViewController& screen) {
    const auto name = screen.values().value(0).simplified().toStdString();
    const auto why = renameRecording(m_recording.file, name);
    if (!why.empty()) {
        return screen.showAlert(
            std::make_shared<AlertView>("The name stays", QString::fromStdString(why), QStringList{"OK"}));
    }
    m_recording.name = name;
    m_application->recorder().setName(m_recording.file, name);
    reloadData();
    screen.popIfOnTop();
}

void RecordingViewController::ask(const RecordingFormat& format) {
    if (!canSendMail()) return save(format);
    auto alert = std::make_shared<AlertView>("Export", QString::fromUtf8(format.title.data()),
                                             QStringList{"Cancel", "Mail", "Save to file"});
    alert->setDismissedHandler([this, self = weak_from_this(), format](int index) {
        if (!self.lock()) return;
        if (index == mailButton) mail(format);
        if (index == saveButton) save(format);
    });
    showAlert(std::move(alert));
}

void RecordingViewController::mail(const RecordingFormat& format) {
    inBackground([recording = m_recording, format](const GoesOn& goesOn, std::string& error) -> Then {
        return [document = documentOf(recording, format, goesOn, error)](ViewController& screen) {
            mailDocument(screen, "Your Torvwerks Recording", document);
        };
    });
}

void RecordingViewController::save(const RecordingFormat& format) {
    choosePlace(*this, fileNameOf(m_recording, format),
                [this, self = weak_from_this(), format](const std::filesystem::path& place) {
                    if (!self.lock()) return;
                    inBackground([recording = m_recording, format, place](const GoesOn& goesOn,
                                                                          std::string& error) -> Then {
                        error = saveTo(place, recording, format, goesOn);
                        return [place](ViewController& screen) { tellSaved(screen.weak_from_this(), place); };
                    });
                });
}

void RecordingViewController::inBackground(Work work) {
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    auto overlay = std::make_shared<ProgressHUD>([cancelled] { *cancelled = true; });
    overlay->setTexts("Making the file", "Long drives take some seconds");
    overlay->setBackgroundAllowed(false);
    setProgress(std::move(overlay));
    const auto self = std::static_pointer_cast<RecordingViewController>(shared_from_this());
    const auto goesOn = [cancelled, ending = m_application->ending()] { return !*cancelled && !*ending; };
    m_application->background().post([weak = std::weak_ptr{self}, work = std::move(work), cancelled, goesOn] {
        std::string error;
        auto then = work(goesOn, error);
        Platform::current().runLoop().performOnMainThread([weak, then = std::move(then), error, cancelled] {
            const auto screen = weak.lock();
            if (!screen) return;
            screen->setProgress(nullptr);
            if (*cancelled) return;
            if (error.empty()) return then(*screen);
            screen->showAlert(std::make_shared<AlertView>("The file can't be made",
                                                          QString::fromStdString(error), QStringList{"OK"}));
        });
    });
}

}  // namespace torv

#include "moc_RecordingViewController.cpp"
