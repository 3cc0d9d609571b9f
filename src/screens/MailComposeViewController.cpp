#include "screens/MailComposeViewController.h"

#include <utility>

#include "platform/Platform.h"

namespace torv {

bool MailComposeViewController::canSendMail() {
    return Platform::current().mailComposer().canSendMail();
}

void MailComposeViewController::addAttachmentDataMimeTypeFileName(Data data, std::string mimeType,
                                                                  std::string fileName) {
    m_mail.attachment = std::move(data);
    m_mail.mimeType = std::move(mimeType);
    m_mail.fileName = std::move(fileName);
}

bool MailComposeViewController::present() const {
    return Platform::current().mailComposer().compose(m_mail);
}

}  // namespace torv
