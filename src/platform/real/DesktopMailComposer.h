#pragma once

#include <filesystem>

#include "platform/MailComposer.h"

namespace torv {

/// Opens the desktop's mail program by xdg-email. The attachment is written to `outbox` first and stays
/// there, because the mail program may read it later.
class DesktopMailComposer final : public MailComposer {
public:
    explicit DesktopMailComposer(std::filesystem::path outbox) : m_outbox(std::move(outbox)) {}

    [[nodiscard]] bool canSendMail() const override;
    bool compose(const Mail& mail) override;

private:
    std::filesystem::path m_outbox;
};

}  // namespace torv
