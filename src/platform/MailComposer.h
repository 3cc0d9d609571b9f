#pragma once

#include <functional>
#include <string>

#include "platform/Document.h"

namespace torv {

/// Hands a mail to the desktop's own composer, where the user finishes and sends it. Main thread.
class MailComposer {
public:
    struct Mail {
        std::string subject;
        Document attachment;
    };
    /// Called on the main thread, at once or later, when no composer could be started.
    using Failed = std::function<void()>;

    MailComposer() = default;
    MailComposer(const MailComposer&) = delete;
    MailComposer& operator=(const MailComposer&) = delete;
    virtual ~MailComposer() = default;

    [[nodiscard]] virtual bool canSendMail() const = 0;
    virtual void compose(const Mail& mail, Failed failed) = 0;
};

}  // namespace torv
