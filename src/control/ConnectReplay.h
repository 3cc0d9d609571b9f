#pragma once

#include <functional>
#include <memory>

#include "control/iTorvAppDelegate.h"
#include "screens/ProgressHUD.h"
#include "tuning/PassReport.h"

namespace torv {

class TuningOverlay;

/// Brings the module back to what this handset has stored, behind an overlay of one screen, the same from
/// `run` to its end. Main thread; blocks, and the loop turns meanwhile.
///
///   State         entered by                      at the end of the pass
///   Idle          the end of a pass               -
///   Running       `run`                           Idle
///   StartingOver  `run` while Running             Running, from the start
///   Cancelled     Cancel on the overlay           the default profile stays active; Running, from the start
///   Ended         `end`, when the screen is left  stays, and never runs again
///
/// A connect that comes while the last one is still being replayed has the replay start over, and not another
/// one inside it. "customTuningSettingsUpdated" is posted once, at the very end.
class ConnectReplay final {
public:
    /// Null takes the overlay away.
    using ShowProgress = std::function<void(std::shared_ptr<ProgressHUD>)>;

    /// Told once a replay has ended: what of the active profile the module has not taken, if that was not
    /// told before.
    using ShowReport = std::function<void(const PassReport&)>;

    ConnectReplay(std::shared_ptr<iTorvAppDelegate> application, ShowProgress showProgress,
                  ShowReport showReport = {})
        : m_application(std::move(application)),
          m_showProgress(std::move(showProgress)),
          m_showReport(std::move(showReport)) {}

    void run();
    void cancel();
    void end() { m_state = State::ended; }

private:
    enum class State { idle, running, startingOver, cancelled, ended };

    PassReport runPass(TuningOverlay& overlay);

    const std::shared_ptr<iTorvAppDelegate> m_application;
    const ShowProgress m_showProgress;
    const ShowReport m_showReport;
    State m_state = State::idle;
};

}  // namespace torv
