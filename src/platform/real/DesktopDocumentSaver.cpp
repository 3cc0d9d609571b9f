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

DocumentSaver::Outcome write(const Document& document, const QString& path) {
    QSaveFile file{path};
    const auto size = static_cast<qint64>(document.contents.size());
    const bool written = file.open(QIODevice::WriteOnly) &&
                         file.write(reinterpret_cast<const char*>(document.contents.data()), size) == size &&
                         file.commit();
    if (written) return {.file = path.toStdString(), .error = {}};
    return {.file = {}, .error = path.toStdString() + ": " + file.errorString().toStdString()};
}

QString plainName(const Document& document) {
    auto name = QString::fromStdString(document.fileName);
    return name.replace(u'/', u'_').remove(QChar{u'\0'});
}

DocumentSaver::Outcome writeToDocuments(const Document& document) {
    const QDir folder{QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)};
    folder.mkpath(QStringLiteral("."));
    const QFileInfo name{plainName(document)};
    auto file = folder.filePath(name.fileName());
    for (int number = 2; QFileInfo::exists(file); ++number) {
        file = folder.filePath(
            QStringLiteral("%1 %2.%3").arg(name.completeBaseName()).arg(number).arg(name.suffix()));
    }
    return write(document, file);
}

}  // namespace

void DesktopDocumentSaver::save(const Document& document, Done done) {
    if (!DesktopPortal::isThere()) return done(writeToDocuments(document));
    auto call = DesktopPortal::method("org.freedesktop.portal.FileChooser", "SaveFile");
    call << QString{} << QStringLiteral("Save to file");
    DesktopPortal::ask(
        call, {{QStringLiteral("current_name"), plainName(document)}},
        [document, done = std::move(done)](const DesktopPortal::Answer& answer) {
            if (!answer.asked) return done(writeToDocuments(document));  // it has no file chooser
            if (!answer.results) return done({});
            const auto places = answer.results.value_or(QVariantMap{}).value("uris").toStringList();
            const QUrl place{places.value(0)};
            done(place.isLocalFile()
                     ? write(document, place.toLocalFile())
                     : DocumentSaver::Outcome{.file = {}, .error = "This is no place for files."});
        });
}

}  // namespace torv
