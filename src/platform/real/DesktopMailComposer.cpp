#include "platform/real/DesktopMailComposer.h"

#include <fcntl.h>
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
constexpr auto mailInterface = "org.freedesktop.portal.Email";
constexpr std::chrono::hours kept{24};

bool hasProgram() {
    return !QStandardPaths::findExecutable(program).isEmpty();
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
    return hasPortal() || hasProgram();
}

bool DesktopMailComposer::hasPortal() const {
    if (!DesktopPortal::isThere()) return false;
    if (!m_portalMails) m_portalMails = DesktopPortal::hasInterface(mailInterface);
    return m_portalMails.value_or(false);
}

void DesktopMailComposer::compose(const Mail& mail, Failed failed) {
    const auto byProgram = [this, mail, failed] {
        if (!composeByProgram(mail)) failed();
    };
    if (!hasPortal()) return byProgram();
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    // The portal wants a file that has a name, and looks it up behind the descriptor.
    const auto path = keepAttachment(mail.attachment);
    if (!path) return failed();
    const int file = ::open(path->c_str(), O_RDONLY | O_CLOEXEC);
    const QList<QDBusUnixFileDescriptor> attachments{QDBusUnixFileDescriptor{file}};  // which keeps a copy
    if (file >= 0) ::close(file);
    if (!attachments.first().isValid()) return byProgram();
    auto call = DesktopPortal::method(mailInterface, "ComposeEmail");
    call << QString{};  // the parent window: none that the portal knows
    DesktopPortal::ask(call,
                       {{QStringLiteral("subject"), QString::fromStdString(mail.subject)},
                        {QStringLiteral("attachment_fds"), QVariant::fromValue(attachments)}},
                       [byProgram](const DesktopPortal::Answer& answer) {
                           if (!answer.results && !answer.cancelled) byProgram();
                       });
}

/// Where it is, readable for the user alone; nothing where it can't be written.
std::optional<std::filesystem::path> DesktopMailComposer::keepAttachment(const Document& document) const {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::create_directories(m_outbox, error);
    fs::permissions(m_outbox, fs::perms::owner_all, error);
    if (!error) removeOldOnes(m_outbox);
    // A name from a profile may hold slashes; the attachment stays within the outbox all the same.
    auto name = document.fileName;
    for (auto& c : name) {
        if (c == '/' || c == '\0') c = '_';
    }
    auto path = m_outbox / name;
    std::ofstream file{path, std::ios::binary};
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, error);
    file.write(reinterpret_cast<const char*>(document.contents.data()),
               static_cast<std::streamsize>(document.contents.size()));
    file.close();
    if (file && !error) return path;
    logLine("the attachment could not be written to " + path.string());
    return std::nullopt;
}

bool DesktopMailComposer::composeByProgram(const Mail& mail) const {
    const auto path = hasProgram() ? keepAttachment(mail.attachment) : std::nullopt;
    if (!path) return false;
    const QStringList arguments{"--subject", QString::fromStdString(mail.subject), "--attach",
                                QString::fromStdString(path->string())};
    return QProcess::startDetached(program, arguments);
}

}  // namespace torv
