#include "platform/real/DesktopMailComposer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QList>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <chrono>
#include <fstream>
#include <system_error>
#include <utility>

#include "platform/Log.h"
#include "platform/real/DesktopPortal.h"

namespace torv {
namespace {

constexpr auto program = "xdg-email";
constexpr std::chrono::hours kept{24};

bool hasProgram() {
    return !QStandardPaths::findExecutable(program).isEmpty();
}

/// A file in memory that nobody can change any more; not valid where that can't be had.
QDBusUnixFileDescriptor sealed(const Document& document) {
    const int file = ::memfd_create(document.fileName.c_str(), MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (file < 0) return {};
    std::size_t written = 0;
    while (written < document.contents.size()) {
        const auto count =
            ::write(file, document.contents.data() + written, document.contents.size() - written);
        if (count <= 0) break;
        written += static_cast<std::size_t>(count);
    }
    ::lseek(file, 0, SEEK_SET);
    ::fcntl(file, F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL);
    QDBusUnixFileDescriptor descriptor;
    if (written == document.contents.size()) descriptor.setFileDescriptor(file);  // which keeps a copy
    ::close(file);
    return descriptor;
}

void removeOldOnes(const std::filesystem::path& outbox) {
    std::error_code error;
    const auto now = std::filesystem::file_time_type::clock::now();
    for (const auto& entry : std::filesystem::directory_iterator{outbox, error}) {
        if (now - entry.last_write_time(error) > kept) std::filesystem::remove(entry.path(), error);
    }
}

}  // namespace

bool DesktopMailComposer::canSendMail() const {
    return DesktopPortal::isThere() || hasProgram();
}

void DesktopMailComposer::compose(const Mail& mail, Failed failed) {
    const auto byProgram = [this, mail, failed] {
        if (!composeByProgram(mail)) failed();
    };
    if (!DesktopPortal::isThere()) return byProgram();
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    const QList<QDBusUnixFileDescriptor> attachments{sealed(mail.attachment)};
    if (!attachments.first().isValid()) return byProgram();
    auto call = DesktopPortal::method("org.freedesktop.portal.Email", "ComposeEmail");
    call << QString{};  // of no window that the portal knows
    DesktopPortal::ask(std::move(call),
                       {{QStringLiteral("subject"), QString::fromStdString(mail.subject)},
                        {QStringLiteral("attachment_fds"), QVariant::fromValue(attachments)}},
                       [byProgram](const DesktopPortal::Answer& answer) {
                           if (!answer.results && !answer.cancelled) byProgram();
                       });
}

bool DesktopMailComposer::composeByProgram(const Mail& mail) const {
    if (!hasProgram()) return false;
    namespace fs = std::filesystem;
    std::error_code error;
    fs::create_directories(m_outbox, error);
    fs::permissions(m_outbox, fs::perms::owner_all, error);
    if (!error) removeOldOnes(m_outbox);
    // A name from a profile may hold slashes; the attachment stays within the outbox all the same.
    auto name = mail.attachment.fileName;
    for (auto& c : name) {
        if (c == '/' || c == '\0') c = '_';
    }
    const auto path = m_outbox / name;
    std::ofstream file{path, std::ios::binary};
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, error);
    file.write(reinterpret_cast<const char*>(mail.attachment.contents.data()),
               static_cast<std::streamsize>(mail.attachment.contents.size()));
    file.close();
    if (!file || error) {
        logLine("the attachment could not be written to " + path.string());
        return false;
    }
    const QStringList arguments{"--subject", QString::fromStdString(mail.subject), "--attach",
                                QString::fromStdString(path.string())};
    return QProcess::startDetached(program, arguments);
}

}  // namespace torv
