#include "platform/real/DesktopDocumentSaver.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>
#include <utility>

#include "platform/real/DesktopPortal.h"

namespace torv {
namespace {

DocumentSaver::Outcome write(const Document& document, const std::filesystem::path& place) {
    const auto path = QString::fromStdString(place.string());
    QSaveFile file{path};
    const auto size = static_cast<qint64>(document.contents.size());
    const bool written = file.open(QIODevice::WriteOnly) &&
                         file.write(reinterpret_cast<const char*>(document.contents.data()), size) == size &&
                         file.commit();
    if (written) return {.file = place, .error = {}};
    return {.file = {}, .error = place.string() + ": " + file.errorString().toStdString()};
}

QString plainName(const std::string& fileName) {
    auto name = QString::fromStdString(fileName);
    return name.replace(u'/', u'_').remove(QChar{u'\0'});
}

/// In the folder of documents, where nothing is yet.
DocumentSaver::Outcome freePlace(const std::string& fileName) {
    const QDir folder{QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)};
    folder.mkpath(QStringLiteral("."));
    const QFileInfo name{plainName(fileName)};
    auto file = folder.filePath(name.fileName());
    for (int number = 2; QFileInfo::exists(file); ++number) {
        file = folder.filePath(
            QStringLiteral("%1 %2.%3").arg(name.completeBaseName()).arg(number).arg(name.suffix()));
    }
    return {.file = file.toStdString(), .error = {}};
}

}  // namespace

void DesktopDocumentSaver::save(const Document& document, Done done) {
    choosePlace(document.fileName, [document, done = std::move(done)](const Outcome& chosen) {
        done(chosen.file ? write(document, *chosen.file) : chosen);
    });
}

void DesktopDocumentSaver::choosePlace(const std::string& fileName, Done done) {
    if (!DesktopPortal::isThere()) return done(freePlace(fileName));
    auto call = DesktopPortal::method("org.freedesktop.portal.FileChooser", "SaveFile");
    call << QString{} << QStringLiteral("Save to file");
    DesktopPortal::ask(
        call, {{QStringLiteral("current_name"), plainName(fileName)}},
        [fileName, done = std::move(done)](const DesktopPortal::Answer& answer) {
            if (!answer.asked) return done(freePlace(fileName));  // it has no file chooser
            if (!answer.results) return done({});
            const auto places = answer.results.value_or(QVariantMap{}).value("uris").toStringList();
            const QUrl place{places.value(0)};
            done(place.isLocalFile() ? Outcome{.file = place.toLocalFile().toStdString(), .error = {}}
                                     : Outcome{.file = {}, .error = "This is no place for files."});
        });
}

}  // namespace torv
