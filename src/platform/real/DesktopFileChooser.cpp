#include "platform/real/DesktopFileChooser.h"

#include <QEventLoop>
#include <QStringList>
#include <QUrl>

#include "platform/real/DesktopPortal.h"

namespace torv {

DesktopFileChooser::Outcome DesktopFileChooser::choose(const QString& title) {
    const Outcome nobody{.file = {}, .error = "there is no file chooser here; name the file behind itorv"};
    if (!DesktopPortal::isThere()) return nobody;
    auto call = DesktopPortal::method("org.freedesktop.portal.FileChooser", "OpenFile");
    call << QString{} << title;
    QEventLoop loop;
    Outcome outcome;
    DesktopPortal::ask(call, {}, [&](const DesktopPortal::Answer& answer) {
        loop.quit();
        if (!answer.asked) {
            outcome = nobody;
            return;
        }
        const auto places =
            answer.results.value_or(QVariantMap{}).value(QStringLiteral("uris")).toStringList();
        const QUrl place{places.value(0)};
        if (place.isLocalFile()) outcome.file = place.toLocalFile();
    });
    loop.exec();
    return outcome;
}

}  // namespace torv
