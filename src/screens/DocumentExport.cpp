#include "screens/DocumentExport.h"

#include <utility>

#include "platform/Platform.h"

namespace torv {
namespace {

constexpr int saveButton = 1;

void tell(const std::weak_ptr<ViewController>& screen, const QString& title, const QString& message) {
    const auto shown = screen.lock();
    if (shown) shown->showAlert(std::make_shared<AlertView>(title, message, QStringList{"OK"}));
}

}  // namespace

bool canSendMail() {
    return Platform::current().mailComposer().canSendMail();
}

void mailDocument(ViewController& screen, const std::string& subject, const Document& document) {
    if (!canSendMail()) {
        return tell(screen.weak_from_this(), QStringLiteral("Oops!"),
                    QStringLiteral("Export requires Mail to be configured on this device."));
    }
    Platform::current().mailComposer().compose(
        {subject, document}, [weak = screen.weak_from_this(), document] {
            const auto shown = weak.lock();
            if (!shown) return;
            auto alert = std::make_shared<AlertView>("The mail can't be written",
                                                     "The mail program could not be started.",
                                                     QStringList{"Cancel", "Save to file"});
            alert->setDismissedHandler([weak, document](int index) {
                const auto still = weak.lock();
                if (still && index == saveButton) saveDocument(*still, document);
            });
            shown->showAlert(std::move(alert));
        });
}

void saveDocument(ViewController& screen, const Document& document) {
    Platform::current().documentSaver().save(
        document, [weak = screen.weak_from_this()](const DocumentSaver::Outcome& outcome) {
            if (outcome.file) return tellSaved(weak, *outcome.file);
            if (!outcome.error.empty())
                tell(weak, QStringLiteral("Not saved"), QString::fromStdString(outcome.error));
        });
}

void choosePlace(ViewController& screen, const std::string& fileName,
                 std::function<void(const std::filesystem::path&)> chosen) {
    Platform::current().documentSaver().choosePlace(
        fileName,
        [weak = screen.weak_from_this(), chosen = std::move(chosen)](const DocumentSaver::Outcome& outcome) {
            if (outcome.file) return chosen(*outcome.file);
            if (!outcome.error.empty())
                tell(weak, QStringLiteral("Not saved"), QString::fromStdString(outcome.error));
        });
}

void tellSaved(const std::weak_ptr<ViewController>& screen, const std::filesystem::path& file) {
    tell(screen, QStringLiteral("Saved"), QString::fromStdString(file.string()));
}

}  // namespace torv
