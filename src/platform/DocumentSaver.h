#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "platform/Document.h"

namespace torv {

/// Lets the user choose where a document is kept, and writes it there. Main thread.
class DocumentSaver {
public:
    struct Outcome {
        std::optional<std::filesystem::path> file;  ///< where it was written, completely
        std::string error;                          ///< why it was not written; empty when the user cancelled
    };
    /// Called once, on the main thread, at once or later.
    using Done = std::function<void(const Outcome&)>;

    DocumentSaver() = default;
    DocumentSaver(const DocumentSaver&) = delete;
    DocumentSaver& operator=(const DocumentSaver&) = delete;
    virtual ~DocumentSaver() = default;

    virtual void save(const Document& document, Done done) = 0;
    /// For what is too large to be held: only asks where a file of this name is to be. The outcome's file is
    /// that place, and whoever asked writes it.
    virtual void choosePlace(const std::string& fileName, Done done) = 0;
};

}  // namespace torv
