#pragma once

#include "platform/DocumentSaver.h"

namespace torv {

/// By the desktop's file chooser where there is a portal; else into the user's folder of documents, under a
/// name that is free there. No half file ever bears the final name.
class DesktopDocumentSaver final : public DocumentSaver {
public:
    void save(const Document& document, Done done) override;
    void choosePlace(const std::string& fileName, Done done) override;
};

}  // namespace torv
