#pragma once

#include <functional>
#include <memory>

#include "control/iTorvAppDelegate.h"
#include "dashboards/iTorvViewController.h"
#include "screens/Stage.h"

namespace torv {

/// Which screen is made from what: the one place where the screens of all subjects meet. Main thread.
class Screens final {
public:
    explicit Screens(std::shared_ptr<iTorvAppDelegate> control) : m_control(std::move(control)) {}

    /// The first page, with its ways to all other screens.
    [[nodiscard]] std::shared_ptr<iTorvViewController> firstPage() const;
    /// The stage with that page on it. `status` is not owned.
    [[nodiscard]] std::unique_ptr<Stage> stage(std::shared_ptr<iTorvViewController> page,
                                               LinkStatus* status) const;
    [[nodiscard]] std::shared_ptr<ViewController> mainMenu() const;
    [[nodiscard]] std::shared_ptr<ViewController> carSetup() const;
    /// Over what the stage shows; nothing where it shows that already.
    void presentConnection(Stage& stage) const;
    /// What a start shows over all: the import of the file that the program was launched with, or else the
    /// question what becomes of a list of profiles that could not be read. Mostly nothing.
    void presentFirst(ViewController& page) const;
    /// Another start wants this one to end, and to import a file: in the middle of a pass that is the user's
    /// choice. Null for a page that is not there yet.
    void askToEnd(ViewController* page, const std::function<void(bool)>& answer) const;

private:
    std::shared_ptr<iTorvAppDelegate> m_control;
};

}  // namespace torv
