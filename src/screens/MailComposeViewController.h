#pragma once

#include <string>

#include "platform/MailComposer.h"

namespace torv {

/// Gathers a mail with one attachment and hands it to the desktop's composer. Main thread.
class MailComposeViewController final {
public:
    [[nodiscard]] static bool canSendMail();

    void setSubject(std::string subject) { m_mail.subject = std::move(subject); }
    void addAttachmentDataMimeTypeFileName(Data data, std::string mimeType, std::string fileName);
    /// False when no composer could be started.
    bool present() const;

private:
    MailComposer::Mail m_mail;
};

}  // namespace torv
