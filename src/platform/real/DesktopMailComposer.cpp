#include "platform/real/DesktopMailComposer.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <fstream>
#include <system_error>

#include "platform/Log.h"

namespace torv {
namespace {

constexpr auto program = "xdg-email";

}  // namespace

bool DesktopMailComposer::canSendMail() const {
    return !QStandardPaths::findExecutable(program).isEmpty();
}

bool DesktopMailComposer::compose(const Mail& mail) {
    std::error_code error;
    std::filesystem::create_directories(m_outbox, error);
    // A name from a profile may hold slashes; the attachment stays within the outbox all the same.
    auto name = mail.fileName;
    for (auto& c : name) {
        if (c == '/' || c == '\0') c = '_';
    }
    const auto path = m_outbox / name;
    std::ofstream file{path, std::ios::binary};
    file.write(reinterpret_cast<const char*>(mail.attachment.data()),
               static_cast<std::streamsize>(mail.attachment.size()));
    file.close();
    if (!file) {
        logLine("the attachment could not be written to " + path.string());
        return false;
    }
    const QStringList arguments{"--subject", QString::fromStdString(mail.subject), "--attach",
                                QString::fromStdString(path.string())};
    return QProcess::startDetached(program, arguments);
}

}  // namespace torv
