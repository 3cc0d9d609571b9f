#pragma once

#include <filesystem>
#include <optional>

#include "platform/MailComposer.h"

namespace torv {

/// Opens the desktop's mail program: by the e-mail portal, which gets the attachment as a descriptor, else by
/// xdg-email. The attachment is written to `outbox`, a folder of the user's alone, and stays there until the
/// next mail a day later, because the mail program may read it at any time.
class DesktopMailComposer final : public MailComposer {
public:
    explicit DesktopMailComposer(std::filesystem::path outbox) : m_outbox(std::move(outbox)) {}

    [[nodiscard]] bool canSendMail() const override;
    void compose(const Mail& mail, Failed failed) override;

private:
    [[nodiscard]] bool hasPortal() const;
    [[nodiscard]] std::optional<std::filesystem::path> keepAttachment(const Document& document) const;
    [[nodiscard]] bool composeByProgram(const Mail& mail) const;

    const std::filesystem::path m_outbox;
    mutable std::optional<bool> m_portalMails;  // what the desktop's portal has answered; it is asked once
};

}  // namespace torv
