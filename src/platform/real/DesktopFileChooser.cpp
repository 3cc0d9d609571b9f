#include "platform/real/DesktopFileChooser.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
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
    const QDBusServiceWatcher watcher{QStringLiteral("org.freedesktop.portal.Desktop"),
                                      QDBusConnection::sessionBus(),
                                      QDBusServiceWatcher::WatchForUnregistration};
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, &loop, [&] {
        outcome.error = "the desktop's file chooser has gone";
        loop.quit();
    });
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
        if (!place.isLocalFile() && !answer.cancelled) outcome.error = "that is no file of this device";
    });
    loop.exec();
    return outcome;
}

}  // namespace torv
