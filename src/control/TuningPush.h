#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "control/iTorvAppDelegate.h"
#include "screens/ViewController.h"
#include "tuning/Activation.h"

namespace torv {

/// A pass that the user has asked for, behind an overlay of the screen that it was asked on. Main thread;
/// blocks, and the loop turns meanwhile. The screen must live on for as long.
class TuningPush final {
public:
    using Pass =
        std::function<PassReport(Activation&, const TuningPass::Progress&, const TuningPass::Cancelled&)>;

    TuningPush(std::shared_ptr<iTorvAppDelegate> application, ViewController& screen)
        : m_application(std::move(application)), m_screen(screen) {}

    PassReport run(const Pass& pass);
    /// Between two values of the pass it ends.
    void cancel() { m_requestCancelCustomTuning = true; }
    /// Whether the last pass was cancelled; then no longer.
    [[nodiscard]] bool takeCancel() { return std::exchange(m_requestCancelCustomTuning, false); }

private:
    const std::shared_ptr<iTorvAppDelegate> m_application;
    ViewController& m_screen;
    bool m_requestCancelCustomTuning = false;
};

}  // namespace torv
