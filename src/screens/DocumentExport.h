#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/Document.h"
#include "screens/ViewController.h"

namespace torv {

// How a document leaves the program. Main thread; what goes wrong is said over the screen, if it is still
// there.

[[nodiscard]] bool canSendMail();
/// Into the desktop's mail composer. Where there is none, an alert says so.
void mailDocument(ViewController& screen, const std::string& subject, const Document& document);
/// To a place that the user chooses; an alert then tells where it is.
void saveDocument(ViewController& screen, const Document& document);
/// For what is too large to be held: hands the place that the user chooses to whoever writes there, and then
/// calls `tellSaved`. Nobody is called when there is none.
void choosePlace(ViewController& screen, const std::string& fileName,
                 std::function<void(const std::filesystem::path&)> chosen);
void tellSaved(const std::weak_ptr<ViewController>& screen, const std::filesystem::path& file);

}  // namespace torv
