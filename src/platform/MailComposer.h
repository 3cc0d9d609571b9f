#pragma once

#include <string>

#include "support/Value.h"

namespace torv {

/// Hands a mail to the desktop's own composer, where the user finishes and sends it. Main thread.
class MailComposer {
public:
    struct Mail {
        std::string subject;
        std::string fileName;  ///< of the attachment
        std::string mimeType;
        Data attachment;
    };

    MailComposer() = default;
    MailComposer(const MailComposer&) = delete;
    MailComposer& operator=(const MailComposer&) = delete;
    virtual ~MailComposer() = default;

    [[nodiscard]] virtual bool canSendMail() const = 0;
    /// False when no composer could be started.
    virtual bool compose(const Mail& mail) = 0;
};

}  // namespace torv
